import type { Class, Instance, ObjectPath, Property } from "../../cim/model";
import { hasQualifier, propertyOf } from "../../cim/names";
import { client } from "../../state/server";
import { Dialog } from "../shared/Dialog";
import { Problem } from "../shared/Problem";
import { fieldText } from "./fields";
import { FieldInput } from "./FieldInput";
import { useFields } from "./useFields";
import { useSending } from "./useSending";

/** Asks for the properties of an instance and sends them; stays with the reason when that failed. */
function PropertyForm({
    title,
    yes,
    namespace,
    properties,
    first,
    send,
    onClose,
}: {
    title: string;
    yes: string;
    namespace: string;
    properties: readonly Property[];
    first: (property: Property) => string;
    send: (changed: Property[]) => Promise<void>;
    onClose: () => void;
}) {
    const fields = useFields(properties, (field) => first(field as Property));
    const { busy, error, send: sendNow } = useSending(onClose);
    const submit = () => {
        const values = fields.values();
        if (!values) return;
        const given = values
            .filter(({ field }) => fields.text(field) !== first(field as Property))
            .map(({ field, value }) => ({ ...(field as Property), value, qualifiers: [] }));
        sendNow(() => send(given));
    };
    return (
        <Dialog
            title={title}
            onClose={onClose}
            foot={
                <>
                    <button class="button" type="button" onClick={onClose}>
                        Cancel
                    </button>
                    <button class="button primary" type="button" disabled={busy} onClick={submit}>
                        {yes}
                    </button>
                </>
            }
        >
            {error !== undefined && <Problem error={error} />}
            {properties.map((property) => (
                <FieldInput
                    key={property.name}
                    field={property}
                    namespace={namespace}
                    text={fields.text(property)}
                    error={fields.error(property)}
                    onText={(text) => fields.set(property, text)}
                />
            ))}
        </Dialog>
    );
}

export function CreateDialog({
    namespace,
    described,
    onCreated,
    onClose,
}: {
    namespace: string;
    described: Class;
    onCreated: (path: ObjectPath) => void;
    onClose: () => void;
}) {
    const isKey = (property: Property) => hasQualifier(property, "Key");
    return (
        <PropertyForm
            title={`Create an instance of ${described.name}?`}
            yes="Create"
            namespace={namespace}
            properties={[
                ...described.properties.filter(isKey),
                ...described.properties.filter((property) => !isKey(property)),
            ]}
            first={() => ""}
            send={async (properties) => {
                const path = await client.createInstance(namespace, {
                    className: described.name,
                    properties,
                });
                onCreated({ ...path, namespace: path.namespace ?? namespace });
            }}
            onClose={onClose}
        />
    );
}

export function ModifyDialog({
    path,
    described,
    instance,
    onModified,
    onClose,
}: {
    path: ObjectPath;
    described: Class;
    instance: Instance;
    onModified: () => void;
    onClose: () => void;
}) {
    const before = (property: Property) =>
        fieldText(propertyOf(instance, property.name)?.value ?? null);
    const changeable = described.properties.filter(
        (property) => !hasQualifier(property, "Key") && !property.embedded,
    );
    const writable = (property: Property) => hasQualifier(property, "Write");
    return (
        <PropertyForm
            title="Change the instance?"
            yes="Change"
            namespace={path.namespace ?? ""}
            properties={[
                ...changeable.filter(writable),
                ...changeable.filter((property) => !writable(property)),
            ]}
            first={before}
            send={async (properties) => {
                const names = properties.map((property) => property.name);
                await client.modifyInstance({ className: path.className, path, properties }, names);
                onModified();
            }}
            onClose={onClose}
        />
    );
}
