import { useEffect, useRef } from "preact/hooks";

import { link } from "../../live/live";

/** Does `again` what failed while the server was away, once it is back. */
export function useReturn(failed: boolean, again: () => void): void {
    const isLinked = link.value.state === "open";
    const latest = useRef({ failed, again });
    latest.current = { failed, again };
    useEffect(() => {
        if (isLinked && latest.current.failed) latest.current.again();
    }, [isLinked]);
}
