/** What a list is filtered by, while it is typed; Escape clears it. */
export function FilterField({
    label = "Filter",
    value,
    onChange,
}: {
    label?: string;
    value: string;
    onChange: (value: string) => void;
}) {
    return (
        <input
            class="field"
            type="search"
            placeholder="Filter"
            aria-label={label}
            value={value}
            onInput={(event) => onChange(event.currentTarget.value)}
            onKeyDown={(event) => {
                if (event.key === "Escape") onChange("");
            }}
        />
    );
}
