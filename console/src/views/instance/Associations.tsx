import { useEffect, useMemo, useState } from "preact/hooks";

import type { Instance, ObjectPath } from "../../cim/model";
import { pathKey } from "../../cim/names";
import { go, instanceHref } from "../../state/routes";
import { client } from "../../state/server";
import { GraphCanvas } from "../graph/GraphCanvas";
import { Problem } from "../shared/Problem";
import { StatusBadge } from "../shared/StatusBadge";
import { drawnGraph, nameOf, statusAt, walkOn, type Link, type Walk } from "./walk";

const listedAtFirst = 50;

/** What is associated with an instance, as a graph that one walks and as a list. */
export function Associations({ path, instance }: { path: ObjectPath; instance: Instance }) {
    const centre = pathKey(path);
    const [walk, setWalk] = useState<Walk>(() => new Map([[centre, { path, instance }]]));
    const [opened, setOpened] = useState<ReadonlySet<string>>(new Set());
    const [selected, setSelected] = useState(centre);
    const [busy, setBusy] = useState(false);
    const [failed, setFailed] = useState<{ error: unknown; path: ObjectPath }>();

    const expand = (from: ObjectPath) => {
        setBusy(true);
        setFailed(undefined);
        Promise.all([client.references(from), client.associators(from)])
            .then(
                ([references, associators]) =>
                    setWalk((before) => walkOn(before, from, references, associators)),
                (error: unknown) => setFailed({ error, path: from }),
            )
            .finally(() => setBusy(false));
    };
    useEffect(() => expand(path), [centre]);

    const { nodes, edges } = useMemo(
        () => drawnGraph(walk, centre, opened),
        [walk, centre, opened],
    );
    const links = walk.get(centre)?.links;
    const place = walk.get(selected);

    const visit = (id: string) => {
        const there = walk.get(id);
        if (!there) {
            setOpened((before) => new Set(before).add(id));
            return;
        }
        setSelected(id);
        if (!there.links) expand(there.path);
    };
    return (
        <section class="panel associations" aria-labelledby="associations">
            <div class="toolbar section-head">
                <h2 id="associations">Associations</h2>
                {busy && (
                    <span class="muted" role="status">
                        asking …
                    </span>
                )}
            </div>
            {failed && <Problem error={failed.error} retry={() => expand(failed.path)} />}
            {links && !links.length && !failed && (
                <p class="muted">Nothing is associated with this instance.</p>
            )}
            {links && links.length > 0 && (
                <div class="walk">
                    <div class="walk-graph">
                        <GraphCanvas
                            label={`Graph of ${nodes.length} instances and ${edges.length} associations; the list beside it has them all`}
                            nodes={nodes}
                            edges={edges}
                            direction="LR"
                            selected={selected}
                            onNode={visit}
                            onOpen={(id) => {
                                const there = walk.get(id);
                                if (there) go({ view: "instance", path: there.path });
                            }}
                        />
                        <p class="walk-bar">
                            {place && selected !== centre ? (
                                <>
                                    <strong>{nameOf(place)}</strong>
                                    <span class="muted">{place.path.className}</span>
                                    {statusAt(place) && <StatusBadge status={statusAt(place)!} />}
                                    <a href={instanceHref(place.path)}>Go there</a>
                                </>
                            ) : (
                                <span class="muted">
                                    A click shows what a box leads to; a double click goes there.
                                </span>
                            )}
                        </p>
                    </div>
                    <LinkList walk={walk} links={links} onShow={visit} />
                </div>
            )}
        </section>
    );
}

function LinkList({
    walk,
    links,
    onShow,
}: {
    walk: Walk;
    links: readonly Link[];
    onShow: (id: string) => void;
}) {
    const [all, setAll] = useState(false);
    const groups = new Map<string, Link[]>();
    for (const link of all ? links : links.slice(0, listedAtFirst)) {
        groups.set(link.association, [...(groups.get(link.association) ?? []), link]);
    }
    return (
        <div class="walk-list">
            {[...groups].map(([association, members]) => (
                <section key={association}>
                    <h3>
                        {association} <span class="muted number">{members.length}</span>
                    </h3>
                    <ul>
                        {members.map((link) => {
                            const key = pathKey(link.to);
                            const place = walk.get(key)!;
                            const status = statusAt(place);
                            return (
                                <li key={link.id}>
                                    <a href={instanceHref(link.to)}>{nameOf(place)}</a>
                                    <span class="muted">
                                        {link.to.className} as {link.toRole}
                                    </span>
                                    {status && <StatusBadge status={status} />}
                                    {link.associationPath && (
                                        <a class="muted" href={instanceHref(link.associationPath)}>
                                            association
                                            <span class="hidden-text"> with {nameOf(place)}</span>
                                        </a>
                                    )}
                                    {!place.links && (
                                        <button
                                            class="button quiet"
                                            type="button"
                                            onClick={() => onShow(key)}
                                        >
                                            Expand
                                            <span class="hidden-text">
                                                {" "}
                                                {nameOf(place)} in the graph
                                            </span>
                                        </button>
                                    )}
                                </li>
                            );
                        })}
                    </ul>
                </section>
            ))}
            {!all && links.length > listedAtFirst && (
                <button class="button" type="button" onClick={() => setAll(true)}>
                    All {links.length}
                </button>
            )}
        </div>
    );
}
