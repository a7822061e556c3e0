import { localTime, localTimeOfDay } from "../../cim/dateTime";

/** The local time of day of a moment in ISO 8601, with its date where it is pointed at. */
export function Time({ text }: { text: string }) {
    const date = new Date(text);
    if (Number.isNaN(date.getTime())) return <span>{text}</span>;
    return (
        <time dateTime={text} title={localTime(date)} class="number">
            {localTimeOfDay(date)}
        </time>
    );
}
