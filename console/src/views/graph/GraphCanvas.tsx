import cytoscape from "cytoscape";
import { useEffect, useRef } from "preact/hooks";

import { shownTheme } from "../../state/settings";
import { Icon, type IconName } from "../shared/Icon";
import { boxOf, placeNodes, type Direction, type GraphEdge, type GraphNode } from "./layout";

interface Props {
    label: string;
    isTall?: boolean;
    nodes: readonly GraphNode[];
    edges: readonly GraphEdge[];
    direction: Direction;
    selected?: string | undefined;
    onNode: (id: string) => void;
    onOpen?: (id: string) => void;
}

/**
 * A graph to look at and to click on. What it shows stands in a list beside it, for those who use
 * neither eyes nor mouse.
 */
export function GraphCanvas({
    label,
    isTall,
    nodes,
    edges,
    direction,
    selected,
    onNode,
    onOpen,
}: Props) {
    const box = useRef<HTMLDivElement>(null);
    const graph = useRef<cytoscape.Core | null>(null);
    const handlers = useRef({ onNode, onOpen });
    handlers.current = { onNode, onOpen };
    const theme = shownTheme.value;

    useEffect(() => {
        const core = cytoscape({
            container: box.current,
            minZoom: 0.15,
            maxZoom: 2.5,
            boxSelectionEnabled: false,
        });
        core.on("tap", "node", (event) => handlers.current.onNode(event.target.id()));
        core.on("dbltap", "node", (event) => handlers.current.onOpen?.(event.target.id()));
        core.on("mouseover", "node", () => box.current?.classList.add("pointing"));
        core.on("mouseout", "node", () => box.current?.classList.remove("pointing"));
        graph.current = core;
        const size = new ResizeObserver(() => core.resize());
        size.observe(box.current!);
        return () => {
            size.disconnect();
            core.destroy();
        };
    }, []);

    // Before the boxes are fitted in: it says how large they are.
    useEffect(() => {
        graph.current!.style(styleOf(direction));
    }, [theme, direction]);

    useEffect(() => {
        const core = graph.current!;
        const places = placeNodes(nodes, edges, direction);
        const ids = new Set([...nodes, ...edges].map((one) => one.id));
        core.elements()
            .filter((one) => !ids.has(one.id()))
            .remove();
        core.batch(() => {
            for (const node of nodes) put(core, "nodes", nodeData(node), places.get(node.id));
            for (const edge of edges) put(core, "edges", { ...edge, label: edge.label ?? "" });
        });
        fit(core);
    }, [nodes, edges, direction]);

    useEffect(() => {
        const core = graph.current!;
        core.nodes().removeClass("chosen");
        if (selected) core.getElementById(selected).addClass("chosen");
    }, [selected, nodes]);

    return (
        <div
            class="graph"
            // The wheel alone scrolls the page, which is taller than its graphs.
            onWheelCapture={(event) => {
                if (!event.ctrlKey && !event.metaKey) event.stopPropagation();
            }}
        >
            <div
                class={isTall ? "graph-canvas tall" : "graph-canvas"}
                ref={box}
                role="img"
                aria-label={label}
            />
            <div class="graph-tools">
                <Tool icon="plus" words="Enlarge" onUse={() => zoom(graph.current!, 1.4)} />
                <Tool icon="minus" words="Reduce" onUse={() => zoom(graph.current!, 1 / 1.4)} />
                <Tool icon="fit" words="Show the whole graph" onUse={() => fit(graph.current!)} />
            </div>
        </div>
    );
}

function Tool({ icon, words, onUse }: { icon: IconName; words: string; onUse: () => void }) {
    return (
        <button
            class="button square"
            type="button"
            aria-label={words}
            title={words}
            onClick={onUse}
        >
            <Icon name={icon} />
        </button>
    );
}

function nodeData(node: GraphNode): Record<string, unknown> & { id: string } {
    const label = node.lines
        .map((line) => (line.length > 34 ? `${line.slice(0, 33)}…` : line))
        .join("\n");
    return {
        id: node.id,
        label,
        ...boxOf(node),
        tone: node.tone ?? "none",
        centre: node.isCentre ? 1 : 0,
        more: node.isMore ? 1 : 0,
    };
}

function put(
    core: cytoscape.Core,
    group: "nodes" | "edges",
    data: Record<string, unknown> & { id: string },
    position?: { x: number; y: number },
): void {
    const there = core.getElementById(data.id);
    if (there.empty())
        core.add({ group, data, ...(position ? { position } : {}) } as cytoscape.ElementDefinition);
    else {
        there.data(data);
        if (position && there.isNode()) there.position(position);
    }
}

function zoom(core: cytoscape.Core, factor: number): void {
    const renderedPosition = { x: core.width() / 2, y: core.height() / 2 };
    core.zoom({ level: core.zoom() * factor, renderedPosition });
}

function fit(core: cytoscape.Core): void {
    core.resize();
    core.fit(undefined, 16);
    // A graph of three boxes is not to be read from the other side of the room.
    if (core.zoom() > 1) {
        core.zoom(1);
        core.center();
    }
}

function styleOf(direction: Direction): cytoscape.StylesheetJson {
    const computed = getComputedStyle(document.documentElement);
    const colour = (name: string) => computed.getPropertyValue(`--${name}`).trim();
    const tones = ["ok", "warn", "error", "info", "unknown"].map((tone) => ({
        selector: `node[tone = "${tone}"]`,
        style: {
            "border-color": colour(tone),
            "background-color": colour(`${tone}-soft`),
            "border-width": 2,
        },
    }));
    return [
        {
            selector: "node",
            style: {
                shape: "round-rectangle",
                width: "data(width)",
                height: "data(height)",
                label: "data(label)",
                "text-wrap": "wrap",
                "text-valign": "center",
                "text-halign": "center",
                "font-family": "system-ui, sans-serif",
                "font-size": 12,
                "line-height": 1.2,
                color: colour("text"),
                "background-color": colour("raised"),
                "border-width": 1,
                "border-color": colour("strong-border"),
            },
        },
        ...tones,
        { selector: "node[centre = 1]", style: { "border-width": 4, "font-weight": "bold" } },
        { selector: "node[more = 1]", style: { "border-style": "dashed" } },
        {
            selector: "node.chosen",
            style: { "outline-width": 3, "outline-offset": 2, "outline-color": colour("accent") },
        },
        {
            selector: "edge",
            style: {
                width: 1.3,
                "line-color": colour("strong-border"),
                "target-arrow-color": colour("strong-border"),
                "target-arrow-shape": "triangle",
                "arrow-scale": 0.8,
                "curve-style": "taxi",
                "taxi-direction": direction === "LR" ? "horizontal" : "vertical",
                label: "data(label)",
                "font-family": "system-ui, sans-serif",
                "font-size": 10,
                color: colour("muted"),
                "text-background-color": colour("surface"),
                "text-background-opacity": 0.9,
                "text-background-padding": "2px",
            },
        },
        // Above the line, and over those that have a part of their way in common.
        { selector: "edge[label != '']", style: { "z-index": 1, "text-margin-y": -9 } },
        { selector: "edge[?dashed]", style: { "line-style": "dashed" } },
    ] as cytoscape.StylesheetJson;
}
