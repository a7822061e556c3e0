/** Replies as servers write them, and fetch that gives them. */

export const head = '<?xml version="1.0" encoding="utf-8"?>\n';

/** A whole reply around what an intrinsic operation answers. */
export function reply(inside: string, operation = "EnumerateInstances"): string {
    return (
        `${head}<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0">` +
        `<SIMPLERSP><IMETHODRESPONSE NAME="${operation}">${inside}</IMETHODRESPONSE></SIMPLERSP>` +
        "</MESSAGE></CIM>"
    );
}

export function result(inside: string): string {
    return reply(`<IRETURNVALUE>${inside}</IRETURNVALUE>`);
}

/** The requests that a client made, and a fetch that answers them with `answer`. */
export function server(answer: (body: string, headers: Headers) => Response | string) {
    const requests: { body: string; headers: Headers }[] = [];
    const fetch = async (_url: unknown, init?: RequestInit): Promise<Response> => {
        const request = { body: String(init?.body), headers: new Headers(init?.headers ?? {}) };
        requests.push(request);
        const answered = answer(request.body, request.headers);
        if (typeof answered !== "string") return answered;
        return new Response(answered, { headers: { "Content-Type": "application/xml" } });
    };
    return { requests, fetch };
}

/** All that an iterable gives, in one list. */
export async function all<T>(batches: AsyncIterable<T[]>): Promise<T[]> {
    const found: T[] = [];
    for await (const batch of batches) found.push(...batch);
    return found;
}
