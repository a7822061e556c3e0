import { useEffect, useState } from "preact/hooks";

import { isObjectPath } from "../../cim/model";
import { nameKey, pathKey } from "../../cim/names";
import { instanceHref } from "../../state/routes";
import {
    allInstances,
    elementNamespaces,
    loadClass,
    loadNamespaces,
    loadTree,
} from "../../state/server";
import { Gauge } from "../charts/Gauge";
import { Line } from "../charts/Line";
import { Problem } from "../shared/Problem";
import { StatusBadge } from "../shared/StatusBadge";
import { complete } from "../instance/walk";
import { History, readingOf, type Reading } from "./readings";

const everyMillis = 5000;
const shownAtFirst = 48;

// What was read since the page was opened stays while other views are looked at.
const histories = new Map<string, History>();

async function readAll(): Promise<{ readings: Reading[]; hasClasses: boolean }> {
    const readings: Reading[] = [];
    let hasClasses = false;
    for (const namespace of elementNamespaces(await loadNamespaces())) {
        const tree = await loadTree(namespace);
        const sensor = tree.byName.has("cim_sensor") ? "CIM_Sensor" : "CIM_NumericSensor";
        for (const name of [sensor, "CIM_Fan"]) {
            hasClasses ||= tree.byName.has(nameKey(name));
            for (const instance of await allInstances(namespace, name)) {
                if (!isObjectPath(instance.path)) continue;
                instance.path = complete(instance.path, namespace);
                readings.push(readingOf(instance, await loadClass(namespace, instance.className)));
            }
        }
    }
    return { readings, hasClasses };
}

/** Sensors and fans as gauges, read again every few seconds while somebody may be looking. */
export function Sensors() {
    const [state, setState] = useState<{
        readings: Reading[];
        hasClasses: boolean;
        seen: number;
    }>();
    const [error, setError] = useState<unknown>();
    const [turn, setTurn] = useState(0);
    const [all, setAll] = useState(false);
    useEffect(() => {
        let ended = false;
        let timer: ReturnType<typeof setTimeout> | undefined;
        const look = async () => {
            if (document.hidden) return;
            const found = await readAll();
            if (ended) return;
            const now = Date.now() / 1000;
            for (const { path, value } of found.readings) {
                const key = pathKey(path);
                const history = histories.get(key) ?? new History();
                histories.set(key, history);
                history.add(now, value);
            }
            setState({ ...found, seen: now });
            setError(undefined);
        };
        const run = () =>
            look()
                .catch((failure: unknown) => {
                    if (!ended) setError(failure);
                })
                .finally(() => {
                    if (!ended) timer = setTimeout(run, everyMillis);
                });
        void run();
        return () => {
            ended = true;
            clearTimeout(timer);
        };
    }, [turn]);

    const readings = state?.readings ?? [];
    return (
        <section class="panel" aria-labelledby="sensors">
            <h2 id="sensors">Sensors and fans</h2>
            {error !== undefined && (
                <Problem error={error} retry={() => setTurn((before) => before + 1)} />
            )}
            {!state && error === undefined && (
                <p class="busy" role="status">
                    Reading them …
                </p>
            )}
            {state && !readings.length && (
                <p class="muted">
                    {state.hasClasses
                        ? "This host has no instances of CIM_Sensor or CIM_Fan now; their readings would be here."
                        : "No namespace has the classes CIM_Sensor or CIM_Fan, whose readings would be here."}
                </p>
            )}
            <ul class="gauges">
                {(all ? readings : readings.slice(0, shownAtFirst)).map((reading) => (
                    <ReadingCard key={pathKey(reading.path)} reading={reading} seen={state!.seen} />
                ))}
            </ul>
            {!all && readings.length > shownAtFirst && (
                <button class="button" type="button" onClick={() => setAll(true)}>
                    All {readings.length}
                </button>
            )}
        </section>
    );
}

const numberText = (value: number): string =>
    value.toLocaleString(undefined, { maximumSignificantDigits: 5 });

function ReadingCard({ reading, seen }: { reading: Reading; seen: number }) {
    const { name, path, value, unit, status } = reading;
    const history = histories.get(pathKey(path))!;
    return (
        <li class="reading">
            <a href={instanceHref(path)} class="clip">
                {name}
            </a>
            {value === undefined ? (
                <p class="muted reading-none">no reading</p>
            ) : (
                <>
                    <Gauge reading={{ ...reading, value }} />
                    <p class="reading-value number">
                        <strong>{numberText(value)}</strong> <span class="muted">{unit}</span>
                    </p>
                    <Line
                        history={history}
                        seen={seen}
                        label={`${name} since the page was opened: ${rangeText(history, unit)}`}
                    />
                </>
            )}
            {status && <StatusBadge status={status} />}
        </li>
    );
}

function rangeText({ values }: History, unit: string): string {
    const known = values.filter((value) => value !== null);
    return `${numberText(Math.min(...known))} to ${numberText(Math.max(...known))} ${unit}`;
}
