import { useEffect, useLayoutEffect, useMemo, useRef, useState } from "preact/hooks";

import { equalNames, nameKey } from "../../cim/names";
import { ancestorsOf, rowId, treeRows, type TreeRow } from "../../state/classTree";
import { go } from "../../state/routes";
import { elementNamespaces, loadTree, trees } from "../../state/server";
import { Icon } from "../shared/Icon";
import { Problem } from "../shared/Problem";
import { parentOf, rowFor } from "../shared/rowKeys";
import { useWindow } from "../shared/useWindow";

const rowHeight = 26;

interface Props {
    namespaces: readonly string[];
    chosen: { namespace?: string | undefined; className?: string | undefined };
    onChoose: () => void;
}

// What is open stays so while other views are looked at.
let openBefore: ReadonlySet<string> | undefined;

/** All classes of all namespaces with a search: arrow keys walk, Enter chooses. */
export function ClassTree({ namespaces, chosen, onChoose }: Props) {
    const [search, setSearch] = useState("");
    const [open, setOpen] = useState<ReadonlySet<string>>(
        () => openBefore ?? atFirst(namespaces, chosen.namespace),
    );
    const [errors, setErrors] = useState<ReadonlyMap<string, unknown>>(new Map());
    openBefore = open;

    const load = (namespace: string) => {
        const set = (error?: unknown) =>
            setErrors((before) => {
                const after = new Map(before);
                if (error === undefined) after.delete(namespace);
                else after.set(namespace, error);
                return after;
            });
        loadTree(namespace).then(() => set(), set);
    };
    const loaded = trees.value;

    useEffect(() => {
        for (const namespace of namespaces) {
            if (search || open.has(rowId(namespace))) load(namespace);
        }
    }, [namespaces, open, search !== ""]);

    // What leads to the chosen class is open.
    const chosenTree = chosen.namespace ? loaded.get(nameKey(chosen.namespace)) : undefined;
    useEffect(() => {
        if (!chosen.namespace) return;
        const lineage =
            chosenTree && chosen.className ? ancestorsOf(chosenTree, chosen.className) : [];
        const needed = ["", ...lineage].map((name) => rowId(chosen.namespace!, name));
        setOpen((before) =>
            needed.every((id) => before.has(id)) ? before : new Set([...before, ...needed]),
        );
    }, [chosen.namespace, chosen.className, chosenTree]);

    const rows = useMemo(
        () =>
            treeRows(
                namespaces.map((namespace) => {
                    const tree = loaded.get(nameKey(namespace));
                    return { namespace, ...(tree ? { tree } : {}) };
                }),
                open,
                search,
            ),
        [namespaces, loaded, open, search],
    );
    const chosenId =
        chosen.namespace && chosen.className
            ? rowId(chosen.namespace, chosen.className)
            : undefined;
    const matches = rows.filter((row) => row.kind !== "namespace").length;

    const toggle = (id: string, to: boolean) => {
        const after = new Set(open);
        if (to) after.add(id);
        else after.delete(id);
        setOpen(after);
    };
    return (
        <>
            <search class="tree-search">
                <input
                    class="field"
                    type="search"
                    placeholder="Search classes  ( / )"
                    aria-label="Search classes"
                    data-search
                    value={search}
                    onInput={(event) => setSearch(event.currentTarget.value)}
                    onKeyDown={(event) => {
                        if (event.key === "Escape" && search) {
                            setSearch("");
                            event.stopPropagation();
                        } else if (event.key === "ArrowDown") {
                            document
                                .querySelector<HTMLElement>('[role="tree"] [tabindex="0"]')
                                ?.focus();
                            event.preventDefault();
                        }
                    }}
                />
                <p class="hidden-text" role="status">
                    {search ? `${matches} lines` : ""}
                </p>
            </search>
            {[...errors].map(([namespace, error]) => (
                <Problem key={namespace} error={error} retry={() => load(namespace)} />
            ))}
            <TreeList
                rows={rows}
                chosenId={chosenId}
                search={search}
                onToggle={toggle}
                onChoose={(row) => {
                    if (row.kind === "namespace") {
                        toggle(row.id, !row.open);
                        return;
                    }
                    go({ view: "explore", namespace: row.namespace, className: row.name });
                    onChoose();
                }}
            />
            {search && !matches && <p class="empty">No class has “{search}” in its name.</p>}
        </>
    );
}

function atFirst(namespaces: readonly string[], chosen: string | undefined): ReadonlySet<string> {
    const first = chosen ?? elementNamespaces(namespaces).find((name) => !equalNames(name, "root"));
    return new Set(first ? [rowId(first)] : []);
}

interface ListProps {
    rows: readonly TreeRow[];
    chosenId: string | undefined;
    search: string;
    onToggle: (id: string, open: boolean) => void;
    onChoose: (row: TreeRow) => void;
}

function TreeList({ rows, chosenId, search, onToggle, onChoose }: ListProps) {
    const searching = search !== "";
    const scroller = useRef<HTMLDivElement>(null);
    const [activeId, setActiveId] = useState<string | undefined>(chosenId);
    const moved = useRef(false);
    const at = (id: string | undefined) => rows.findIndex((row) => row.id === id);
    const active = Math.max(0, at(activeId) >= 0 ? at(activeId) : at(chosenId));
    const { shown, page, bringUp } = useWindow(scroller, rowHeight, rows.length, active);

    useLayoutEffect(() => {
        if (!moved.current) return;
        moved.current = false;
        scroller.current
            ?.querySelector<HTMLElement>('[tabindex="0"]')
            ?.focus({ preventScroll: true });
    });

    // A class that was chosen elsewhere comes into sight once its line is there.
    const chosenAt = at(chosenId);
    const broughtUp = useRef<string | null>(null);
    useEffect(() => {
        if (!chosenId || chosenAt < 0 || broughtUp.current === chosenId) return;
        broughtUp.current = chosenId;
        setActiveId(chosenId);
        bringUp(chosenAt);
    }, [chosenId, chosenAt]);

    const move = (to: number) => {
        const row = rows[Math.max(0, Math.min(rows.length - 1, to))];
        if (!row) return;
        moved.current = true;
        setActiveId(row.id);
        bringUp(rows.indexOf(row));
    };
    const onKeyDown = (event: KeyboardEvent) => {
        const row = rows[active];
        if (!row || event.ctrlKey || event.metaKey || event.altKey) return;
        const to = rowFor(event.key, active, page(), rows.length);
        switch (event.key) {
            case "ArrowRight":
                if (row.open === false) onToggle(row.id, true);
                else if (row.open) move(active + 1);
                break;
            case "ArrowLeft":
                if (row.open && !searching) onToggle(row.id, false);
                else move(parentOf(rows, active));
                break;
            case "Enter":
            case " ":
                onChoose(row);
                break;
            default:
                if (to === undefined) return;
                move(to);
        }
        event.preventDefault();
    };

    return (
        <div class="tree" ref={scroller} onKeyDown={onKeyDown}>
            <div
                role="tree"
                aria-label="Classes"
                class="tree-rows"
                style={{ height: `${rows.length * rowHeight}px` }}
            >
                {shown.map((index) => {
                    const row = rows[index]!;
                    return (
                        <div
                            key={row.id}
                            role="treeitem"
                            aria-level={row.level}
                            aria-expanded={row.open}
                            aria-selected={row.id === chosenId}
                            aria-posinset={row.position}
                            aria-setsize={row.siblings}
                            tabIndex={index === active ? 0 : -1}
                            class={`tree-row ${row.kind}`}
                            style={{
                                top: `${index * rowHeight}px`,
                                paddingLeft: `${row.level * 14 - 8}px`,
                            }}
                            onClick={() => {
                                setActiveId(row.id);
                                onChoose(row);
                            }}
                        >
                            <span
                                class={`twist ${row.open ? "open" : ""}`}
                                onClick={(event) => {
                                    if (row.open === undefined || searching) return;
                                    event.stopPropagation();
                                    setActiveId(row.id);
                                    onToggle(row.id, !row.open);
                                }}
                            >
                                {row.open !== undefined && <Icon name="arrow" />}
                            </span>
                            <Icon name={row.kind} />
                            <span class="clip" title={row.name}>
                                <Marked
                                    text={row.name}
                                    mark={row.kind === "namespace" ? "" : search.trim()}
                                />
                            </span>
                            {(row.kind === "association" || row.kind === "indication") && (
                                <span class="kind">{row.kind}</span>
                            )}
                        </div>
                    );
                })}
            </div>
        </div>
    );
}

/** A text with what was searched for in it made visible. */
function Marked({ text, mark }: { text: string; mark: string }) {
    const at = mark ? nameKey(text).indexOf(nameKey(mark)) : -1;
    if (at < 0) return <>{text}</>;
    const end = at + mark.length;
    return (
        <>
            {text.slice(0, at)}
            <mark>{text.slice(at, end)}</mark>
            {text.slice(end)}
        </>
    );
}
