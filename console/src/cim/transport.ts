/** One CIM-XML request by fetch, its reply read in slices that leave the thread to others. */

import { CimXmlError } from "./elements";
import { CimError, HttpError } from "./errors";
import { ReplyReader, statusText, type DeclaredTypes, type Item } from "./replyReader";
import { XmlError } from "./xmlReader";

export interface Request {
    method: string; // the CIMMethod header
    object: string; // the CIMObject header, before it is encoded
    body: string;
    declared?: DeclaredTypes;
    signal?: AbortSignal;
}

/** What the reader of replies needs of its surroundings. */
export interface Surroundings {
    fetch: typeof fetch;
    now: () => number; // milliseconds
    pause: () => Promise<void>; // lets other tasks run
}

const sliceTime = 12; // milliseconds of reading before others may run; half a frame is left to them
const pieceSize = 16 * 1024; // bytes that are read between two looks at the clock
const maximumRefusal = 4096; // characters of a refusal that are shown

interface Scheduler {
    yield?: () => Promise<void>;
}

/** Lets the browser paint and react; timers would wait 4 ms each. */
export function pauseForOthers(): Promise<void> {
    const scheduler = (globalThis as { scheduler?: Scheduler }).scheduler;
    if (scheduler?.yield) return scheduler.yield();
    return new Promise((resolve) => {
        const channel = new MessageChannel();
        channel.port1.onmessage = () => {
            channel.port1.close();
            resolve();
        };
        channel.port2.postMessage(null);
    });
}

/** Non-ASCII, blanks and percent signs are encoded, as all servers decode them. */
function encodedObject(object: string): string {
    return encodeURIComponent(object).replace(/%(2F|3A|3D|22|2C)/g, (code) =>
        decodeURIComponent(code),
    );
}

async function refusalText(response: Response): Promise<string> {
    const isText = response.headers.get("Content-Type")?.startsWith("text/plain") ?? false;
    const text = isText ? (await response.text()).slice(0, maximumRefusal).trim() : "";
    if (!isText) await response.body?.cancel();
    if (text) return text;
    if (response.status === 401) return "the server wants a user name and a password";
    const reason = response.statusText ? ` ${response.statusText}` : "";
    return `the server refused the request: ${response.status}${reason}`;
}

async function requireReply(response: Response): Promise<ReadableStream<Uint8Array>> {
    const { headers } = response;
    const cimError = headers.get("CIMError") ?? undefined;
    if (response.status !== 200) {
        throw new HttpError(response.status, await refusalText(response), cimError);
    }
    const code = Number(headers.get("CIMStatusCode") ?? 0);
    if (code > 0) {
        await response.body?.cancel();
        const text = headers.get("CIMStatusCodeDescription");
        throw new CimError(code, text ? decoded(text) : statusText(code));
    }
    const type = headers.get("Content-Type") ?? "";
    if (!/^(application|text)\/xml\b/i.test(type) || !response.body) {
        await response.body?.cancel();
        const said = type ? `'${type.slice(0, 80)}'` : "nothing";
        throw new HttpError(200, `the answer is ${said} where CIM-XML is expected`, cimError);
    }
    return response.body;
}

function decoded(text: string): string {
    try {
        return decodeURIComponent(text);
    } catch {
        return text;
    }
}

/**
 * Sends a request and gives what its reply holds in batches, as they arrive. The next piece of the
 * reply is asked for when the batch has been taken; who stops taking ends the request.
 */
export async function* send(
    url: string,
    request: Request,
    surroundings: Surroundings,
): AsyncGenerator<Item[], void, void> {
    const response = await surroundings.fetch(url, {
        method: "POST",
        headers: {
            "Content-Type": 'application/xml; charset="utf-8"',
            CIMOperation: "MethodCall",
            CIMMethod: encodedObject(request.method),
            CIMObject: encodedObject(request.object),
        },
        body: request.body,
        cache: "no-store",
        redirect: "error",
        signal: request.signal ?? null,
    });
    const body = (await requireReply(response)).getReader();
    try {
        yield* readReply(body, new ReplyReader(request.declared), surroundings);
    } finally {
        await body.cancel().catch(() => undefined);
    }
}

async function* readReply(
    body: ReadableStreamDefaultReader<Uint8Array>,
    reader: ReplyReader,
    { now, pause }: Surroundings,
): AsyncGenerator<Item[], void, void> {
    const decoder = new TextDecoder("utf-8", { fatal: true });
    let sliceEnd = now() + sliceTime;
    for (;;) {
        const { done, value } = await body.read();
        if (done) break;
        for (let place = 0; place < value.length; place += pieceSize) {
            push(reader, decode(decoder, value.subarray(place, place + pieceSize)));
            if (now() < sliceEnd) continue;
            if (reader.hasItems) yield reader.take();
            await pause();
            sliceEnd = now() + sliceTime;
        }
        if (reader.hasItems) yield reader.take();
    }
    push(reader, decode(decoder));
    reader.end();
    if (reader.hasItems) yield reader.take();
}

function decode(decoder: TextDecoder, bytes?: Uint8Array): string {
    try {
        return bytes ? decoder.decode(bytes, { stream: true }) : decoder.decode();
    } catch {
        throw new CimXmlError("the reply is not in UTF-8");
    }
}

function push(reader: ReplyReader, text: string): void {
    try {
        reader.push(text);
    } catch (error) {
        if (!(error instanceof XmlError)) throw error;
        throw new CimXmlError(`the reply is no XML: ${error.message}`);
    }
}
