import { useEffect, useMemo, useState } from "preact/hooks";

import { isObjectPath, type Class } from "../../cim/model";
import { pathKey, pathText } from "../../cim/names";
import { shownValues, type ShownValue } from "../../cim/valueText";
import { go, instanceHref } from "../../state/routes";
import { Dialog } from "../shared/Dialog";
import { FilterField } from "../shared/FilterField";
import { Icon } from "../shared/Icon";
import { Problem } from "../shared/Problem";
import { useReturn } from "../shared/useReturn";
import { copy, VirtualGrid } from "../shared/VirtualGrid";
import { columnsOf, csvOf, widthOf, type Column, type Row } from "./rows";
import { useOrdered, useRows } from "./useRows";

const everySeconds = [0, 5, 30];

/** The instances of a class and its subclasses as a table. */
export function InstanceTable({ namespace, described }: { namespace: string; described: Class }) {
    const isAbstract = described.qualifiers.some(
        (one) => one.name.toLowerCase() === "abstract" && one.value === true,
    );
    const [asked, setAsked] = useState(isAbstract ? 0 : 1);
    const [every, setEvery] = useState(0);
    const [filter, setFilter] = useState("");
    const [sort, setSort] = useState<{ column: Column; descending: boolean }>();
    const [chosen, setChosen] = useState<ReadonlySet<string>>();
    const [choosing, setChoosing] = useState(false);
    const [said, setSaid] = useState("");
    const { rows, subclasses, busy, error, at } = useRows(namespace, described.name, asked);

    const refresh = () => setAsked((before) => before + 1);
    useReturn(error !== undefined, refresh);
    useEffect(() => {
        if (!every) return;
        const timer = setInterval(() => document.hidden || refresh(), every * 1000);
        return () => clearInterval(timer);
    }, [every]);

    const all = useMemo(() => columnsOf(described, subclasses), [described, subclasses]);
    // Columns that nobody has a value for are left out until they are chosen. The first rows tell.
    const filled = useMemo(
        () =>
            all.filter(
                (column) => column.isKey || rows.slice(0, 500).some((row) => row.hasValue(column)),
            ),
        [all, rows],
    );
    const columns = chosen ? all.filter((column) => chosen.has(column.name)) : filled;
    const widths = useMemo(
        () => new Map(all.map((column) => [column.name, widthOf(column, rows)])),
        [all, rows],
    );
    const ordered = useOrdered(rows, all, { sort, filter });

    if (!asked) {
        return (
            <p class="toolbar">
                <span class="muted">
                    The class is abstract: its instances are those of its subclasses.
                </span>
                <button class="button" type="button" onClick={() => setAsked(1)}>
                    Ask for them
                </button>
            </p>
        );
    }
    const open = (row: number) => {
        const path = ordered[row]?.instance.path;
        if (path) go({ view: "instance", path });
    };
    const say = (text: string, done: Promise<boolean>) =>
        done.then((well) =>
            setSaid(well ? text : "This browser lets nobody write to the clipboard here."),
        );
    return (
        <>
            <div class="toolbar">
                <FilterField label="Filter instances" value={filter} onChange={setFilter} />
                <span class="muted number" role="status">
                    {busy && !at
                        ? `${rows.length.toLocaleString()} so far …`
                        : filter.trim()
                          ? `${ordered.length.toLocaleString()} of ${rows.length.toLocaleString()}`
                          : `${rows.length.toLocaleString()} ${rows.length === 1 ? "instance" : "instances"}`}
                </span>
                <span class="grow" />
                <span class="muted" role="status">
                    {said}
                </span>
                <button class="button" type="button" onClick={() => setChoosing(true)}>
                    <Icon name="columns" />
                    Columns
                </button>
                <button
                    class="button"
                    type="button"
                    onClick={() =>
                        void say(`${ordered.length} rows copied.`, copy(csvOf(ordered, columns)))
                    }
                >
                    <Icon name="copy" />
                    CSV
                </button>
                <select
                    class="field"
                    aria-label="Refresh by itself"
                    value={every}
                    onChange={(event) => setEvery(Number(event.currentTarget.value))}
                >
                    {everySeconds.map((seconds) => (
                        <option key={seconds} value={seconds}>
                            {seconds ? `every ${seconds} s` : "by hand"}
                        </option>
                    ))}
                </select>
                <button class="button" type="button" disabled={busy} onClick={refresh}>
                    <Icon name="refresh" />
                    Refresh
                </button>
            </div>
            {error !== undefined && <Problem error={error} retry={refresh} />}
            {!rows.length && (at || error !== undefined) ? (
                at && <p class="empty">There are no instances of this class now.</p>
            ) : (
                <div class="table-room">
                    <VirtualGrid
                        label={`Instances of ${described.name}`}
                        columns={columns.map((column) => ({
                            name: column.name,
                            title: column.name || "Class",
                            width: widths.get(column.name)!,
                            numeric: column.numeric,
                            ...(column.property ? { hint: column.property.type } : {}),
                        }))}
                        count={ordered.length}
                        rowId={(row) => idOf(ordered[row]!, row)}
                        cell={(row, column) => (
                            <Cell
                                row={ordered[row]!}
                                column={columns[column]!}
                                first={column === 0}
                            />
                        )}
                        sort={sort && { name: sort.column.name, descending: sort.descending }}
                        onSort={(name) => {
                            const column = all.find((one) => one.name === name)!;
                            setSort((before) => {
                                if (before?.column.name !== name)
                                    return { column, descending: false };
                                return before.descending ? undefined : { column, descending: true };
                            });
                        }}
                        onOpen={open}
                        onCopy={(row, column) => {
                            const path = ordered[row]!.instance.path;
                            return column === 0 && path
                                ? pathText(path)
                                : ordered[row]!.text(columns[column]!);
                        }}
                    />
                </div>
            )}
            {choosing && (
                <ColumnChoice
                    all={all}
                    shown={columns}
                    onChoose={setChosen}
                    onClose={() => setChoosing(false)}
                />
            )}
        </>
    );
}

const idOf = ({ instance }: Row, row: number): string =>
    instance.path ? pathKey(instance.path) : String(row);

function Cell({ row, column, first }: { row: Row; column: Column; first: boolean }) {
    const value = row.value(column);
    const path = row.instance.path;
    if (first && path) {
        return (
            <a href={instanceHref(path)} tabIndex={-1}>
                {row.text(column) || row.instance.className}
            </a>
        );
    }
    if (isObjectPath(value)) {
        return (
            <a href={instanceHref(value)} tabIndex={-1}>
                {pathText(value)}
            </a>
        );
    }
    // A time is as it was sent in the instance's card: 25 characters more would hide what it says.
    const isTime = column.property?.type === "datetime";
    return <Words shown={shownValues(value, row.described(column))} withRaw={!isTime} />;
}

function Words({ shown, withRaw }: { shown: readonly ShownValue[]; withRaw: boolean }) {
    return (
        <>
            {shown.map(({ words, raw }, index) => (
                <>
                    {index > 0 && ", "}
                    {words}
                    {withRaw && raw !== undefined && <span class="raw"> {raw}</span>}
                </>
            ))}
        </>
    );
}

function ColumnChoice({
    all,
    shown,
    onChoose,
    onClose,
}: {
    all: readonly Column[];
    shown: readonly Column[];
    onChoose: (names: ReadonlySet<string> | undefined) => void;
    onClose: () => void;
}) {
    const names = new Set(shown.map((column) => column.name));
    return (
        <Dialog
            title="Columns"
            onClose={onClose}
            foot={
                <>
                    <button class="button" type="button" onClick={() => onChoose(undefined)}>
                        Those with values
                    </button>
                    <button
                        class="button"
                        type="button"
                        onClick={() => onChoose(new Set(all.map((column) => column.name)))}
                    >
                        All
                    </button>
                    <button class="button primary" type="button" onClick={onClose}>
                        Done
                    </button>
                </>
            }
        >
            <ul class="choices">
                {all.map((column) => (
                    <li key={column.name}>
                        <label>
                            <input
                                type="checkbox"
                                checked={names.has(column.name)}
                                disabled={names.size === 1 && names.has(column.name)}
                                onChange={() => {
                                    const after = new Set(names);
                                    if (!after.delete(column.name)) after.add(column.name);
                                    onChoose(after);
                                }}
                            />{" "}
                            {column.name || "Class"}
                            {column.isKey && <span class="muted"> key</span>}
                        </label>
                    </li>
                ))}
            </ul>
        </Dialog>
    );
}
