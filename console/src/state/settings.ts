import { effect, signal } from "@preact/signals";

export type Theme = "auto" | "light" | "dark";

const key = "theme";

export const theme = signal<Theme>("auto");

/** Whether light or dark is shown now; what draws on canvases follows it. */
export const shownTheme = signal<"light" | "dark">("light");

/** The write switch: off whenever the page is opened. */
export const writing = signal(false);

/** Has the page wear the theme that was chosen, now and when the system's changes. */
export function followTheme(): void {
    const system = matchMedia("(prefers-color-scheme: dark)");
    const systemDark = signal(system.matches);
    system.addEventListener("change", () => (systemDark.value = system.matches));
    theme.value = remembered();
    effect(() => {
        const chosen = theme.value;
        const shown = chosen === "auto" ? (systemDark.value ? "dark" : "light") : chosen;
        document.documentElement.dataset.theme = shown;
        shownTheme.value = shown;
        remember(chosen);
    });
}

// A browser that keeps nothing for this page throws.
function remembered(): Theme {
    try {
        const text = localStorage.getItem(key);
        return text === "light" || text === "dark" ? text : "auto";
    } catch {
        return "auto";
    }
}

function remember(chosen: Theme): void {
    try {
        if (chosen === "auto") localStorage.removeItem(key);
        else localStorage.setItem(key, chosen);
    } catch {
        // It holds until the page is closed.
    }
}
