/**
 * A push parser for the XML that WBEM servers send. It is fed in pieces of any size, keeps nothing
 * but the piece of markup that is not whole yet, and is strict: what is not well-formed, has a
 * document type, or passes a limit is an XmlError. It knows no DOM and runs wherever text is.
 */

export interface XmlHandler {
    open(name: string, attributes: Map<string, string>): void;
    /** Character data with references resolved; what is between two tags may come in pieces. */
    text(text: string): void;
    close(name: string): void;
}

export class XmlError extends Error {
    constructor(message: string) {
        super(message);
        this.name = "XmlError";
    }
}

const maximumDepth = 256;
const maximumAttributes = 64;
const maximumMarkup = 8 * 1024 * 1024; // characters of one tag: an ERROR has its text in an attribute
const maximumReference = 16;

const nameStart =
    ":A-Z_a-z\\u00C0-\\u00D6\\u00D8-\\u00F6\\u00F8-\\u02FF\\u0370-\\u037D\\u037F-\\u1FFF" +
    "\\u200C\\u200D\\u2070-\\u218F\\u2C00-\\u2FEF\\u3001-\\uD7FF\\uF900-\\uFDCF\\uFDF0-\\uFFFD" +
    "\\u{10000}-\\u{EFFFF}";
const name = `[${nameStart}][${nameStart}\\-.0-9\\u00B7\\u0300-\\u036F\\u203F\\u2040]*`;

const tagPattern = new RegExp(`^(${name})`, "u");
const attributePattern = new RegExp(
    `[ \\t\\r\\n]+(${name})[ \\t\\r\\n]*=[ \\t\\r\\n]*(?:"([^<"]*)"|'([^<']*)')`,
    "uy",
);
const declarationPattern =
    /^\s+version\s*=\s*(["'])1\.[0-9]+\1(\s+encoding\s*=\s*(["'])[A-Za-z][A-Za-z0-9._-]*\3)?(\s+standalone\s*=\s*(["'])(yes|no)\5)?\s*$/;
const referencePattern = /&(?:#([0-9]+)|#x([0-9A-Fa-f]+)|(lt|gt|amp|quot|apos));/y;
const forbidden = /[\u0000-\u0008\u000B\u000C\u000E-\u001F\uFFFE\uFFFF]/;
const blank = /^[ \t\r\n]*$/;

const entities: Record<string, string> = { lt: "<", gt: ">", amp: "&", quot: '"', apos: "'" };

/** Places where character data may be, and what ends them. */
const sections = {
    comment: { begin: "<!--", end: "-->" },
    cdata: { begin: "<![CDATA[", end: "]]>" },
    instruction: { begin: "<?", end: "?>" },
} as const;
type Section = keyof typeof sections;

export class XmlReader {
    private readonly handler: XmlHandler;
    private readonly openNames: string[] = [];
    private rest = "";
    private section: Section | undefined;
    private sectionText = ""; // of a comment's last characters, of an instruction all
    private consumed = 0;
    private hasRoot = false;
    private beginsText = false; // whether the section is the first thing of all

    constructor(handler: XmlHandler) {
        this.handler = handler;
    }

    /** Reads on. What cannot be judged yet is kept for the next piece. */
    push(piece: string): void {
        const isFirst = this.consumed === 0 && this.rest === "";
        this.rest += isFirst && piece.startsWith("\uFEFF") ? piece.slice(1) : piece;
        let place = 0;
        for (;;) {
            const next = this.section ? this.readSection(place) : this.readContent(place);
            if (next === place) break;
            place = next;
        }
        this.consumed += place;
        this.rest = this.rest.slice(place);
        if (this.rest.length > maximumMarkup) this.fail("a piece of markup is too long");
    }

    /** Says that nothing follows. */
    end(): void {
        if (this.rest !== "" && !this.section && this.openNames.length === 0) {
            // What was held back at the end may be nothing but blanks.
            if (blank.test(this.rest)) this.rest = "";
        }
        if (this.rest !== "" || this.section || this.openNames.length > 0) {
            throw new XmlError("the text ends before its last element does");
        }
        if (!this.hasRoot) throw new XmlError("there is no element");
    }

    private fail(reason: string): never {
        throw new XmlError(`${reason}, near character ${this.consumed + 1}`);
    }

    /** Each reader returns the place behind what it took; the same place when it needs more text. */
    private readContent(place: number): number {
        if (place >= this.rest.length) return place;
        if (this.rest[place] !== "<") return this.readText(place);
        const second = this.rest[place + 1];
        return second === "!" || second === "?" ? this.openSection(place) : this.readTag(place);
    }

    private openSection(place: number): number {
        for (const section of ["comment", "cdata", "instruction"] as const) {
            const { begin } = sections[section];
            if (this.rest.startsWith(begin, place)) {
                if (section === "cdata" && this.openNames.length === 0) {
                    this.fail("there is text outside of the element");
                }
                this.section = section;
                this.sectionText = "";
                this.beginsText = this.consumed + place === 0;
                return place + begin.length;
            }
            if (begin.startsWith(this.rest.slice(place))) return place;
        }
        this.fail("a document type is not taken");
    }

    private readText(place: number): number {
        let end = this.rest.indexOf("<", place);
        if (end < 0) {
            end = this.rest.length - this.heldBack();
            const reference = this.rest.lastIndexOf("&");
            if (reference >= place && !this.rest.includes(";", reference)) {
                if (end - reference > maximumReference) this.fail("a reference is not closed");
                end = Math.min(end, reference);
            }
            if (end <= place) return place;
        }
        const raw = this.rest.slice(place, end);
        if (raw.includes("]]>")) this.fail("']]>' stands in text");
        const text = this.resolve(raw, "\n");
        if (this.openNames.length > 0) {
            this.handler.text(text);
        } else if (!blank.test(raw)) {
            this.fail("there is text outside of the element");
        }
        return end;
    }

    /** How much at the end may be half of something: of a line end, or of what ends a section. */
    private heldBack(): number {
        if (this.rest.endsWith("]]")) return 2;
        return this.rest.endsWith("\r") || this.rest.endsWith("]") ? 1 : 0;
    }

    private readSection(place: number): number {
        const section = this.section as Section;
        const { end } = sections[section];
        const found = this.rest.indexOf(end, place);
        if (found < 0) {
            // What may be the beginning of the end, or a line end cut in two, waits.
            let stop = Math.max(place, this.rest.length - (end.length - 1));
            if (stop > place && this.rest[stop - 1] === "\r") --stop;
            if (stop > place) this.takeSection(section, this.rest.slice(place, stop));
            return stop;
        }
        this.takeSection(section, this.rest.slice(place, found));
        this.section = undefined;
        if (section === "comment" && this.sectionText.endsWith("-")) {
            this.fail("a comment ends with '--->'");
        }
        if (section === "instruction") this.endInstruction();
        return found + end.length;
    }

    private takeSection(section: Section, text: string): void {
        this.requireCharacters(text);
        if (section === "cdata") {
            this.handler.text(text.replace(/\r\n?/g, "\n"));
            return;
        }
        this.sectionText += text;
        if (section === "comment") {
            if (this.sectionText.includes("--")) this.fail("a comment has '--' in it");
            this.sectionText = this.sectionText.slice(-1);
        } else if (this.sectionText.length > maximumMarkup) {
            this.fail("a processing instruction is too long");
        }
    }

    private endInstruction(): void {
        const target = tagPattern.exec(this.sectionText)?.[1];
        const rest = this.sectionText.slice(target?.length ?? 0);
        if (target === undefined || !/^([ \t\r\n]|$)/.test(rest)) {
            this.fail("a processing instruction has no name");
        }
        if (target.toLowerCase() !== "xml") return;
        if (target !== "xml" || !this.beginsText || !declarationPattern.test(rest)) {
            this.fail("the XML declaration is wrong or not at the beginning");
        }
    }

    private readTag(place: number): number {
        const end = this.findTagEnd(place + 1);
        if (end < 0) return place;
        const inside = this.rest.slice(place + 1, end);
        if (inside.startsWith("/")) {
            this.closeTag(inside.slice(1));
        } else {
            this.openTag(inside);
        }
        return end + 1;
    }

    /** The place of the `>` that ends a tag: one in an attribute's value does not. */
    private findTagEnd(place: number): number {
        for (;;) {
            const end = this.rest.indexOf(">", place);
            if (end < 0) return -1;
            const quote = /["']/.exec(this.rest.slice(place, end));
            if (!quote) return end;
            const close = this.rest.indexOf(quote[0], place + quote.index + 1);
            if (close < 0) return -1;
            place = close + 1;
        }
    }

    private closeTag(inside: string): void {
        const expected = this.openNames.pop();
        const closed = inside.replace(/[ \t\r\n]+$/, "");
        if (expected === undefined || closed !== expected) {
            this.fail(`</${closed.slice(0, 80)}> closes what is not open`);
        }
        this.handler.close(closed);
    }

    private openTag(inside: string): void {
        const isEmpty = inside.endsWith("/");
        const text = isEmpty ? inside.slice(0, -1) : inside;
        const tag = tagPattern.exec(text)?.[1];
        if (tag === undefined) this.fail("a tag has no name");
        if (this.openNames.length === 0) {
            if (this.hasRoot) this.fail("there is a second element");
            this.hasRoot = true;
        }
        if (this.openNames.length === maximumDepth) this.fail("elements are nested too deeply");
        this.handler.open(tag, this.attributesOf(text, tag));
        if (isEmpty) {
            this.handler.close(tag);
        } else {
            this.openNames.push(tag);
        }
    }

    private attributesOf(text: string, tag: string): Map<string, string> {
        const attributes = new Map<string, string>();
        let place = tag.length;
        for (;;) {
            attributePattern.lastIndex = place;
            const match = attributePattern.exec(text);
            if (!match) break;
            const key = match[1] ?? "";
            if (attributes.has(key)) this.fail(`<${tag}> has the attribute ${key} twice`);
            if (attributes.size === maximumAttributes)
                this.fail(`<${tag}> has too many attributes`);
            attributes.set(key, this.resolve(match[2] ?? match[3] ?? "", " "));
            place = attributePattern.lastIndex;
        }
        if (!blank.test(text.slice(place))) this.fail(`<${tag.slice(0, 80)}> is not a tag`);
        return attributes;
    }

    private requireCharacters(text: string): void {
        if (forbidden.test(text)) this.fail("there is a character that XML does not have");
    }

    /** Text with its references resolved. Line ends become `lineEnd`; in attributes tabs do, too. */
    private resolve(raw: string, lineEnd: "\n" | " "): string {
        this.requireCharacters(raw);
        let text = raw;
        if (text.includes("\r")) text = text.replace(/\r\n?/g, "\n");
        if (lineEnd === " ") text = text.replace(/[\n\t]/g, " ");
        let place = text.indexOf("&");
        if (place < 0) return text;
        let result = "";
        let taken = 0;
        while (place >= 0) {
            referencePattern.lastIndex = place;
            const match = referencePattern.exec(text);
            if (!match) this.fail("a reference is none that XML has");
            result += text.slice(taken, place) + this.referenced(match);
            taken = referencePattern.lastIndex;
            place = text.indexOf("&", taken);
        }
        return result + text.slice(taken);
    }

    private referenced([, decimal, hexadecimal, entity]: RegExpExecArray): string {
        if (entity !== undefined) return entities[entity] ?? "";
        const code = decimal ? parseInt(decimal, 10) : parseInt(hexadecimal ?? "", 16);
        const isCharacter =
            code <= 0x10ffff &&
            (code < 0xd800 || code > 0xdfff) &&
            code > 0 &&
            !forbidden.test(String.fromCodePoint(code));
        if (!isCharacter) this.fail("a reference is to a character that XML does not have");
        return String.fromCodePoint(code);
    }
}
