import type { Reading } from "../host/readings";

const radius = 42;
const length = Math.PI * radius;

const share = (value: number, { least, most }: Reading): number =>
    Math.max(0, Math.min(1, (value - least) / (most - least || 1)));

/** A number between its ends as a half circle, with marks where it stops being well. */
export function Gauge({ reading }: { reading: Reading & { value: number } }) {
    const full = share(reading.value, reading) * length;
    return (
        <svg
            class={`gauge tone-${reading.status?.tone ?? "info"}`}
            viewBox="0 0 100 54"
            aria-hidden="true"
        >
            <path class="gauge-back" d={`M8 50a${radius} ${radius} 0 0 1 84 0`} />
            <path
                class="gauge-front"
                d={`M8 50a${radius} ${radius} 0 0 1 84 0`}
                stroke-dasharray={`${full} ${length}`}
            />
            {reading.limits.map((limit) => {
                const angle = Math.PI * (1 - share(limit.value, reading));
                const at = (r: number) => `${50 + r * Math.cos(angle)} ${50 - r * Math.sin(angle)}`;
                return (
                    <path
                        key={`${limit.value}${limit.isUpper}`}
                        class={limit.isCritical ? "gauge-mark critical" : "gauge-mark"}
                        d={`M${at(35)}L${at(49)}`}
                    />
                );
            })}
        </svg>
    );
}
