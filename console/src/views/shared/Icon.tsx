const paths = {
    alert: "M8 2 1.5 13.5h13zM8 6.5v3.5M8 12v.1",
    arrow: "M6 3.5 10.5 8 6 12.5",
    association:
        "M5.5 8h5M1.8 8a1.8 1.8 0 1 0 3.6 0 1.8 1.8 0 1 0-3.6 0M10.6 8a1.8 1.8 0 1 0 3.6 0 1.8 1.8 0 1 0-3.6 0",
    class: "M2.5 3h11v10h-11zM2.5 6.5h11",
    close: "M3.5 3.5l9 9M12.5 3.5l-9 9",
    columns: "M2.5 3h11v10h-11zM6.2 3v10M9.8 3v10",
    copy: "M5.5 5.5h8v8h-8zM3 10.5H2.5v-8h8V3",
    edit: "M3 13l.6-3L11 2.6 13.4 5 6 12.4z",
    fit: "M2.5 6V2.5H6M10 2.5h3.5V6M13.5 10v3.5H10M6 13.5H2.5V10",
    host: "M2.5 2.5h11v4.5h-11zM2.5 9h11v4.5h-11zM5 4.8v.1M5 11.3v.1",
    indication: "M4.5 11V7a3.5 3.5 0 0 1 7 0v4l1.5 1h-10zM7 14h2",
    info: "M8 1.8a6.2 6.2 0 1 0 0 12.4A6.2 6.2 0 1 0 8 1.8M8 7.2v4M8 4.8v.1",
    menu: "M2.5 4h11M2.5 8h11M2.5 12h11",
    minus: "M3 8h10",
    moon: "M13.5 9.5A6 6 0 1 1 6.5 2.5a4.8 4.8 0 0 0 7 7z",
    namespace: "M2 4h4.5l1.5 1.5h6v7.5H2z",
    play: "M4.5 3v10l8-5z",
    plus: "M8 3v10M3 8h10",
    refresh:
        "M13.5 3v3.5H10M2.5 13V9.5H6M3.2 6.2a5.2 5.2 0 0 1 9.4-.8l.9 1.1M12.8 9.8a5.2 5.2 0 0 1-9.4.8l-.9-1.1",
    search: "M7 2.5a4.5 4.5 0 1 0 0 9 4.5 4.5 0 1 0 0-9M10.5 10.5 14 14",
    sun: "M8 5a3 3 0 1 0 0 6 3 3 0 1 0 0-6M8 1v1.5M8 13.5V15M1 8h1.5M13.5 8H15M3 3l1 1M12 12l1 1M13 3l-1 1M4 12l-1 1",
    theme: "M8 2a6 6 0 1 0 0 12A6 6 0 1 0 8 2M8 2v12M8 5h4.5M8 8h6M8 11h4.5",
    trash: "M3 4.5h10M6.5 4.5V3h3v1.5M4.5 4.5l.6 9h5.8l.6-9",
} as const;

export type IconName = keyof typeof paths;

/** A sign beside words; a screen reader passes it over. */
export function Icon({ name }: { name: IconName }) {
    return (
        <svg class="icon" viewBox="0 0 16 16" aria-hidden="true" focusable="false">
            <path d={paths[name]} />
        </svg>
    );
}
