import { go, route } from "../state/routes";

/** Has "/" lead to the search of the view, or to that of the class tree where the view has none. */
export function followSearchKey(): void {
    addEventListener("keydown", (event) => {
        if (event.key !== "/" || event.ctrlKey || event.metaKey || event.altKey || isTyping(event))
            return;
        if (document.querySelector("dialog[open]")) return;
        event.preventDefault();
        if (focusSearch()) return;
        if (route.value.view !== "explore") go({ view: "explore" });
        // The tree is there once the route was drawn; its drawer may have to come in first.
        setTimeout(() => {
            if (focusSearch()) return;
            document.querySelector<HTMLElement>(".drawer-button[aria-expanded=false]")?.click();
            setTimeout(focusSearch, 250);
        }, 50);
    });
}

function isTyping(event: KeyboardEvent): boolean {
    const target = event.target;
    return target instanceof HTMLElement && target.matches("input, textarea, select");
}

function focusSearch(): boolean {
    const search = document.querySelector<HTMLInputElement>("[data-search]");
    search?.focus();
    search?.select();
    return search !== null && document.activeElement === search;
}
