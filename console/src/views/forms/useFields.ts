import { useState } from "preact/hooks";

import type { CimValue } from "../../cim/model";
import { parseField, type Field } from "./fields";

/** What is typed into the fields of a form, and what is wrong with it once it was sent or left. */
export function useFields(fields: readonly Field[], first: (field: Field) => string = () => "") {
    const [texts, setTexts] = useState<Record<string, string>>(() =>
        Object.fromEntries(fields.map((field) => [field.name, first(field)])),
    );
    const [touched, setTouched] = useState<ReadonlySet<string>>(new Set());
    const parsed = (field: Field) => parseField(texts[field.name] ?? "", field);
    return {
        text: (field: Field) => texts[field.name] ?? "",
        set: (field: Field, text: string) => {
            setTexts((before) => ({ ...before, [field.name]: text }));
            setTouched((before) => new Set(before).add(field.name));
        },
        isTouched: (field: Field) => touched.has(field.name),
        error: (field: Field) => {
            const value = parsed(field);
            return touched.has(field.name) && "error" in value ? value.error : undefined;
        },
        /** All values, or undefined when one is wrong, which is then shown. */
        values: (): { field: Field; value: CimValue }[] | undefined => {
            setTouched(new Set(fields.map((field) => field.name)));
            const values: { field: Field; value: CimValue }[] = [];
            for (const field of fields) {
                const value = parsed(field);
                if ("error" in value) return undefined;
                values.push({ field, value: value.value });
            }
            return values;
        },
    };
}
