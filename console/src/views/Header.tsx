import { href, route, type Route } from "../state/routes";
import { theme, writing, type Theme } from "../state/settings";
import { Icon, type IconName } from "./shared/Icon";
import { ServerLight } from "./ServerLight";

const tabs: readonly { route: Route; title: string }[] = [
    { route: { view: "host" }, title: "Host" },
    { route: { view: "explore" }, title: "Explore" },
    { route: { view: "alerts" }, title: "Alerts" },
    { route: { view: "requests" }, title: "Requests" },
    { route: { view: "modules" }, title: "Modules" },
];

export function Header() {
    const shown = route.value.view === "instance" ? "explore" : route.value.view;
    return (
        <header class="header">
            <ServerLight />
            <nav class="tabs" aria-label="Views">
                {tabs.map((tab) => (
                    <a
                        key={tab.title}
                        href={href(tab.route)}
                        aria-current={tab.route.view === shown ? "page" : undefined}
                    >
                        {tab.title}
                    </a>
                ))}
            </nav>
            <div class="controls">
                <button
                    class="switch"
                    type="button"
                    role="switch"
                    aria-checked={writing.value}
                    title="Methods and changes are possible only while this is on."
                    onClick={() => (writing.value = !writing.value)}
                >
                    <span class="track" aria-hidden="true" />
                    <span>Write</span>
                    <span class="label">{writing.value ? "on" : "off"}</span>
                </button>
                <ThemeButton />
            </div>
        </header>
    );
}

const themes: Record<Theme, { next: Theme; icon: IconName; words: string }> = {
    auto: { next: "light", icon: "theme", words: "as the system" },
    light: { next: "dark", icon: "sun", words: "light" },
    dark: { next: "auto", icon: "moon", words: "dark" },
};

function ThemeButton() {
    const { next, icon, words } = themes[theme.value];
    return (
        <button
            class="button quiet square"
            type="button"
            aria-label={`Colours: ${words}`}
            title={`Colours: ${words}`}
            onClick={() => (theme.value = next)}
        >
            <Icon name={icon} />
        </button>
    );
}
