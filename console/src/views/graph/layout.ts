import { Graph, layout } from "@dagrejs/dagre";

import type { Tone } from "../../state/status";

export interface GraphNode {
    id: string;
    /** The lines of its box; the last one is its state in words where it has one. */
    lines: readonly string[];
    tone?: Tone;
    isCentre?: boolean;
    /** A box that stands for others. */
    isMore?: boolean;
}

export interface GraphEdge {
    id: string;
    source: string;
    target: string;
    label?: string;
    dashed?: boolean;
}

export type Direction = "LR" | "TB";

const lineHeight = 15;
const letterWidth = 6.6;

/** The size of a box with these lines, in pixels of the graph. */
export function boxOf(node: GraphNode): { width: number; height: number } {
    const longest = Math.max(...node.lines.map((line) => Math.min(line.length, 34)));
    return {
        width: Math.max(70, longest * letterWidth * (node.isCentre ? 1.12 : 1) + 20), // bold is wider
        height: node.lines.length * lineHeight + 14,
    };
}

/** Where the centres of the boxes are, by id. */
export function placeNodes(
    nodes: readonly GraphNode[],
    edges: readonly GraphEdge[],
    direction: Direction,
): Map<string, { x: number; y: number }> {
    // Where edges are named, the names stand between the ranks.
    const longest = Math.max(0, ...edges.map((edge) => edge.label?.length ?? 0));
    const ranksep = direction === "LR" ? Math.max(60, longest * 5.6 + 30) : 70;
    const graph = new Graph({ multigraph: true });
    graph.setGraph({ rankdir: direction, nodesep: 10, ranksep, edgesep: 6 });
    graph.setDefaultEdgeLabel(() => ({}));
    for (const node of nodes) graph.setNode(node.id, boxOf(node));
    for (const edge of edges) graph.setEdge(edge.source, edge.target, {}, edge.id);
    layout(graph);
    return new Map(
        nodes.map(({ id }) => {
            const { x, y } = graph.node(id) as { x: number; y: number };
            return [id, { x, y }];
        }),
    );
}
