import type { ComponentChildren } from "preact";

import { Problem } from "./Problem";
import type { Load } from "./useLoad";

/** What was loaded; before that that it is on its way, and when it failed why, with another try. */
export function Loaded<T>({
    load,
    what,
    children,
}: {
    load: Load<T>;
    what: string;
    children: (value: T) => ComponentChildren;
}) {
    return (
        <>
            {load.error !== undefined && <Problem error={load.error} retry={load.reload} />}
            {load.value !== undefined
                ? children(load.value)
                : load.busy && (
                      <p class="busy" role="status">
                          {what} …
                      </p>
                  )}
        </>
    );
}
