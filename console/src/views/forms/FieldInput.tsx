import { useId, useState } from "preact/hooks";

import { hasQualifier, qualifierOf } from "../../cim/names";
import { valueMapOf, valueText } from "../../cim/valueText";
import { writePath } from "../../state/routes";
import { client } from "../../state/server";
import { problemText } from "../shared/Problem";
import type { Field } from "./fields";

interface Props {
    field: Field;
    namespace: string;
    text: string;
    error?: string | undefined;
    disabled?: boolean;
    onText: (text: string) => void;
}

/** One field of a form, as its type wants it. */
export function FieldInput({ field, namespace, text, error, disabled, onText }: Props) {
    const id = useId();
    const about = qualifierOf(field, "Description")?.value;
    const type = field.type === "reference" ? `${field.referenceClass ?? ""} REF` : field.type;
    return (
        <div class="form-field">
            <label for={id}>
                <strong>{field.name}</strong>{" "}
                <code class="muted">
                    {type}
                    {field.isArray && "[], one in a line"}
                </code>
                {hasQualifier(field, "Required") && <span class="muted"> required</span>}
            </label>
            <Control
                {...{ field, namespace, text, onText }}
                common={{
                    id,
                    class: "field",
                    disabled: disabled === true,
                    "aria-invalid": error !== undefined,
                    "aria-describedby": `${id}-about`,
                }}
            />
            <p id={`${id}-about`} class={error ? "tone-error" : "muted"}>
                {error ?? (about === undefined ? "" : valueText(about))}
            </p>
        </div>
    );
}

interface ControlProps {
    field: Field;
    namespace: string;
    text: string;
    onText: (text: string) => void;
    common: {
        id: string;
        class: string;
        disabled: boolean;
        "aria-invalid": boolean;
        "aria-describedby": string;
    };
}

function Control({ field, namespace, text, onText, common }: ControlProps) {
    const values =
        field.type === "boolean"
            ? [
                  { value: "true", words: "true" },
                  { value: "false", words: "false" },
              ]
            : valueMapOf(field);
    if (values.length) {
        const chosen = text.split("\n");
        const known = new Set(values.map(({ value }) => value));
        const others = chosen.filter((one) => one && !known.has(one));
        const options = [...values, ...others.map((value) => ({ value, words: "" }))].map(
            ({ value, words }) => (
                <option key={value} value={value} selected={chosen.includes(value)}>
                    {words && words !== value ? `${words} (${value})` : value}
                </option>
            ),
        );
        if (field.isArray) {
            return (
                <select
                    {...common}
                    multiple
                    size={Math.min(6, options.length)}
                    onChange={(event) =>
                        onText(
                            [...event.currentTarget.selectedOptions]
                                .map((one) => one.value)
                                .join("\n"),
                        )
                    }
                >
                    {options}
                </select>
            );
        }
        return (
            <select {...common} onChange={(event) => onText(event.currentTarget.value)}>
                <option value="" selected={!text}>
                    not given
                </option>
                {options}
            </select>
        );
    }
    if (field.isArray) {
        return (
            <textarea
                {...common}
                rows={3}
                value={text}
                onInput={(event) => onText(event.currentTarget.value)}
            />
        );
    }
    if (field.type === "reference") {
        return <ReferenceInput {...{ field, namespace, text, onText, common }} />;
    }
    const hint = field.type === "datetime" ? "2026-05-01 12:00 or 1d 2h 30m" : "not given";
    return (
        <input
            {...common}
            inputMode={/^(uint|sint|real)/.test(field.type) ? "decimal" : "text"}
            autocomplete="off"
            placeholder={hint}
            value={text}
            onInput={(event) => onText(event.currentTarget.value)}
        />
    );
}

/** A path, typed or picked from the instances of the class, which are asked for once it has the focus. */
function ReferenceInput({ field, namespace, text, onText, common }: ControlProps) {
    const [paths, setPaths] = useState<readonly string[]>();
    const [failed, setFailed] = useState("");
    const load = async () => {
        if (paths || !field.referenceClass) return;
        setPaths([]);
        const found: string[] = [];
        for await (const batch of client.instanceNames(namespace, field.referenceClass)) {
            for (const path of batch)
                found.push(writePath({ ...path, namespace: path.namespace ?? namespace }));
            if (found.length >= 500) break;
        }
        setPaths(found);
    };
    return (
        <>
            <input
                {...common}
                autocomplete="off"
                list={`${common.id}-paths`}
                placeholder={`an instance of ${field.referenceClass ?? "any class"}`}
                value={text}
                onFocus={() => {
                    load().catch((error: unknown) => setFailed(problemText(error).text));
                }}
                onInput={(event) => onText(event.currentTarget.value)}
            />
            <datalist id={`${common.id}-paths`}>
                {paths?.map((path) => (
                    <option key={path} value={path} />
                ))}
            </datalist>
            {failed && <p class="tone-error">{failed}</p>}
        </>
    );
}
