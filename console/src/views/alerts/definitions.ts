import { signal } from "@preact/signals";

import { CimError } from "../../cim/client";
import type { Class } from "../../cim/model";
import { nameKey } from "../../cim/names";
import { elementNamespaces, loadClass, loadNamespaces } from "../../state/server";

const definitions = signal<ReadonlyMap<string, Class>>(new Map());
const asked = new Set<string>();

/** The class of an indication, from whichever namespace has it: undefined until it is there. */
export function definitionOf(className: string): Class | undefined {
    const key = nameKey(className);
    const known = definitions.value.get(key);
    if (!known && !asked.has(key)) {
        asked.add(key);
        void find(className).catch(() => undefined);
    }
    return known;
}

async function find(className: string): Promise<void> {
    const names = await loadNamespaces();
    const likely = elementNamespaces(names);
    for (const namespace of new Set([...likely, ...names])) {
        try {
            const found = await loadClass(namespace, className);
            definitions.value = new Map(definitions.value).set(nameKey(className), found);
            return;
        } catch (error) {
            if (!(error instanceof CimError)) throw error;
        }
    }
}
