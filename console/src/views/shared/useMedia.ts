import { useEffect, useState } from "preact/hooks";

/** Whether a media query holds, now and whenever that changes. */
export function useMedia(query: string): boolean {
    const [holds, setHolds] = useState(() => matchMedia(query).matches);
    useEffect(() => {
        const media = matchMedia(query);
        const follow = () => setHolds(media.matches);
        follow();
        media.addEventListener("change", follow);
        return () => media.removeEventListener("change", follow);
    }, [query]);
    return holds;
}
