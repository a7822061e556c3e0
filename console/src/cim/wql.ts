/**
 * Conditions of WQL as `cimhost` takes them: read, held against a class, completed while they are typed.
 * The grammar is that of the server, so that what is accepted here is accepted there.
 */

import type { CimType, Class, Property } from "./model";
import { equalNames, named, propertyOf } from "./names";
import { valueMapOf } from "./valueText";

/** What is wrong with a condition, and where: characters from 0 on. */
export interface WqlProblem {
    message: string;
    position: number;
    length: number;
}

export interface Choice {
    text: string; // what is put in
    detail?: string; // what it means
}

/** What may stand at the cursor; a choice takes the place of the text from `start` to `end`. */
export interface Completion {
    start: number;
    end: number;
    choices: Choice[];
}

const maximumText = 16 * 1024;
const maximumComparisons = 256;
const maximumDepth = 64;
const maximumNameParts = 16;

const keywords = ["SELECT", "FROM", "WHERE", "AND", "OR", "NOT", "IS", "NULL", "LIKE", "ISA"];
const comparisons = ["=", "<>", "!=", "<=", ">=", "<", ">"];

type TokenKind = "name" | "number" | "string" | "symbol" | "end";

interface Token {
    kind: TokenKind;
    text: string;
    position: number;
}

/** What the parser wanted where the text ended. */
type Expectation =
    | { kind: "operand" }
    | { kind: "operator"; property?: Property | undefined }
    | { kind: "value"; property?: Property | undefined }
    | { kind: "word"; words: string[] }
    | { kind: "className" }
    | { kind: "nothing" };

type Operand =
    | { kind: "property"; parts: Token[]; property?: Property | undefined }
    | { kind: "string" | "number" | "boolean"; token: Token };

class Refusal extends Error {
    readonly problem: WqlProblem;
    readonly expectation: Expectation | undefined;

    constructor(message: string, token: Token, expectation?: Expectation) {
        super(message);
        this.problem = {
            message,
            position: token.position,
            length: Math.max(token.text.length, 1),
        };
        this.expectation = token.kind === "end" ? expectation : undefined;
    }
}

const tokenPattern =
    /([A-Za-z_\u0080-\uFFFF][\w\u0080-\uFFFF]*)|([+-]?\.?\d(?:[eE][+-]|[\w.\u0080-\uFFFF])*)|("(?:[^"\\]|\\[^]|"")*"|'(?:[^'\\]|\\[^]|'')*')|(<>|<=|>=|!=|[^])/y;
const numberPattern = /^[+-]?(\d+|(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?)$/;
const kinds: TokenKind[] = ["name", "number", "string", "symbol"];

function tokensOf(text: string): Token[] {
    const tokens: Token[] = [];
    let position = 0;
    for (;;) {
        while (/[ \t\r\n\f\v]/.test(text[position] ?? "")) ++position;
        tokenPattern.lastIndex = position;
        const match = tokenPattern.exec(text);
        if (!match) break;
        const index = match.slice(1).findIndex((group) => group !== undefined);
        tokens.push({ kind: kinds[index] ?? "symbol", text: match[0], position });
        position = tokenPattern.lastIndex;
    }
    tokens.push({ kind: "end", text: "", position });
    return tokens;
}

function isKeyword(token: Token, word: string): boolean {
    return token.kind === "name" && equalNames(token.text, word);
}

function shown(token: Token): string {
    return token.kind === "end" ? "the end" : `'${token.text.slice(0, 40)}'`;
}

class Parser {
    private readonly tokens: Token[];
    private readonly definition: Class | undefined;
    private place = 0;
    private depth = 0;
    private comparisons = 0;

    constructor(text: string, definition: Class | undefined) {
        this.tokens = tokensOf(text);
        this.definition = definition;
    }

    read(): void {
        this.any();
        this.accept(";");
        if (this.token.kind !== "end") this.refuse("AND, OR or the end is expected");
    }

    private get token(): Token {
        return this.tokens[this.place] as Token;
    }

    private advance(): Token {
        const { token } = this;
        if (token.kind !== "end") ++this.place;
        return token;
    }

    private accept(word: string): boolean {
        const isThere =
            isKeyword(this.token, word) ||
            (this.token.kind === "symbol" && this.token.text === word);
        if (isThere) this.advance();
        return isThere;
    }

    private refuse(expected: string, expectation?: Expectation, token = this.token): never {
        const { kind, text } = token;
        if (kind === "symbol" && (text === '"' || text === "'")) {
            throw new Refusal("the string is not closed", token);
        }
        const found = kind === "end" ? "" : `: there is ${shown(token)}`;
        throw new Refusal(expected + found, token, expectation);
    }

    private any(): void {
        do this.all();
        while (this.accept("OR"));
    }

    private all(): void {
        do this.factor();
        while (this.accept("AND"));
    }

    private factor(): void {
        if (this.depth === maximumDepth) {
            throw new Refusal(`more than ${maximumDepth} levels of parentheses`, this.token);
        }
        ++this.depth;
        if (this.accept("NOT")) {
            this.factor();
        } else if (this.accept("(")) {
            this.any();
            if (!this.accept(")")) this.refuse("AND, OR or ')' is expected");
        } else {
            this.comparison();
        }
        --this.depth;
    }

    private comparison(): void {
        if (++this.comparisons > maximumComparisons) {
            throw new Refusal(`more than ${maximumComparisons} comparisons`, this.token);
        }
        const left = this.operand({ kind: "operand" });
        const property = left.kind === "property" ? left.property : undefined;
        if (this.wordOperator(left)) return;
        const operator = this.token;
        if (operator.kind !== "symbol" || !comparisons.includes(operator.text)) {
            this.refuse("a comparison is expected", { kind: "operator", property });
        }
        this.advance();
        const right = this.operand({ kind: "value", property });
        if (left.kind !== "property" && right.kind !== "property") {
            throw new Refusal("a comparison needs a property", operator);
        }
        requireSameKind(left, right);
        requireSameKind(right, left);
    }

    /** IS [NOT] NULL, [NOT] LIKE, [NOT] ISA. */
    private wordOperator(left: Operand): boolean {
        const start = this.token;
        if (this.accept("IS")) {
            const isNot = this.accept("NOT");
            if (!this.accept("NULL")) {
                const words = isNot ? ["NULL"] : ["NULL", "NOT NULL"];
                this.refuse("NULL is expected", { kind: "word", words });
            }
        } else {
            const isNot = this.accept("NOT");
            if (this.accept("LIKE")) {
                if (this.token.kind !== "string") this.refuse("a pattern in quotes is expected");
                this.advance();
            } else if (this.accept("ISA")) {
                if (this.token.kind === "string") this.advance();
                else this.name("a class name", { kind: "className" });
            } else if (isNot) {
                this.refuse("LIKE or ISA is expected", { kind: "word", words: ["LIKE", "ISA"] });
            } else {
                return false;
            }
        }
        if (left.kind !== "property") throw new Refusal("a comparison with a constant", start);
        return true;
    }

    private operand(expectation: Expectation): Operand {
        const { token } = this;
        if (token.kind === "string") return { kind: "string", token: this.advance() };
        if (token.kind === "number") {
            if (!numberPattern.test(token.text)) this.refuse("a number is expected");
            return { kind: "number", token: this.advance() };
        }
        if (isKeyword(token, "TRUE") || isKeyword(token, "FALSE")) {
            return { kind: "boolean", token: this.advance() };
        }
        const parts = [this.name("a property or a constant", expectation)];
        while (this.accept(".")) {
            if (parts.length === maximumNameParts) throw new Refusal("the name is too long", token);
            parts.push(this.name("a property", { kind: "operand" }));
        }
        return { kind: "property", parts, property: this.propertyOf(parts) };
    }

    private name(expected: string, expectation: Expectation): Token {
        if (
            this.token.kind !== "name" ||
            keywords.some((keyword) => isKeyword(this.token, keyword))
        ) {
            this.refuse(`${expected} is expected`, expectation);
        }
        return this.advance();
    }

    /** The property of the class that a name means; undefined where the class does not tell. */
    private propertyOf(parts: readonly Token[]): Property | undefined {
        const { definition } = this;
        if (!definition) return undefined;
        const isQualified = parts.length > 1 && equalNames(parts[0]?.text ?? "", definition.name);
        const own = isQualified ? parts.slice(1) : parts;
        const [first] = own;
        if (!first || first.text.startsWith("__")) return undefined;
        const property = propertyOf(definition, first.text);
        if (!property) {
            throw new Refusal(`${definition.name} has no property ${first.text}`, first);
        }
        return own.length === 1 ? property : undefined;
    }
}

type ConstantKind = "string" | "number" | "boolean";

const words: Record<ConstantKind, string> = {
    string: "a text in quotes",
    number: "a number",
    boolean: "TRUE or FALSE",
};

function constantKind(type: CimType): ConstantKind | undefined {
    if (type === "reference") return undefined;
    if (type === "boolean") return "boolean";
    return /^([us]int|real)/.test(type) ? "number" : "string";
}

/** A property is compared with a constant of its own kind. */
function requireSameKind(side: Operand, other: Operand): void {
    if (side.kind !== "property" || other.kind === "property" || !side.property) return;
    const { name, type, isArray } = side.property;
    const token = side.parts.at(-1) as Token;
    if (isArray) throw new Refusal(`${name} is an array: it cannot be compared`, token);
    const expected = constantKind(type);
    if (expected && expected !== other.kind) {
        throw new Refusal(`${name} is ${type}: ${words[expected]} is expected`, other.token);
    }
}

function refusalOf(text: string, definition: Class | undefined): Refusal | undefined {
    try {
        new Parser(text, definition).read();
        return undefined;
    } catch (error) {
        if (error instanceof Refusal) return error;
        throw error;
    }
}

/** What is wrong with a condition for indications of the class; an empty one is right. */
export function checkCondition(text: string, definition?: Class): WqlProblem | undefined {
    if (text.trim() === "") return undefined;
    if (new TextEncoder().encode(text).length > maximumText) {
        return { message: "the condition is longer than 16 KiB", position: 0, length: text.length };
    }
    return refusalOf(text, definition)?.problem;
}

/** The query for a class and a condition, which may be empty. */
export function queryText(className: string, condition: string): string {
    const restriction = condition.trim();
    return `SELECT * FROM ${className}${restriction ? ` WHERE ${restriction}` : ""}`;
}

const wordBefore = /(?:[A-Za-z_\u0080-\uFFFF][\w\u0080-\uFFFF]*|[+-]?\d[\w.]*|["'][^"']*|[<>!=]+)$/;
const wordBehind = /^[\w\u0080-\uFFFF]*/;

/** What may stand at the cursor, given the class and the names of classes for ISA. */
export function completeCondition(
    text: string,
    cursor: number,
    definition?: Class,
    classNames: readonly string[] = [],
): Completion {
    const before = text.slice(0, cursor);
    const typed = wordBefore.exec(before)?.[0] ?? "";
    const start = cursor - typed.length;
    const behind = /^\w/.test(typed) ? (wordBehind.exec(text.slice(cursor))?.[0] ?? "") : "";
    const expectation = expectationAt(before.slice(0, start), definition);
    const choices = choicesFor(expectation, definition, classNames);
    return { start, end: cursor + behind.length, choices: matching(choices, typed) };
}

function expectationAt(before: string, definition: Class | undefined): Expectation {
    if (before.trim() === "") return { kind: "operand" };
    const refusal = refusalOf(before, definition);
    if (!refusal) return { kind: "word", words: ["AND", "OR"] };
    if (refusal.expectation) return refusal.expectation;
    // Open parentheses are waiting for more of the same.
    const isOpen = refusal.problem.position >= before.trimEnd().length;
    return isOpen && refusal.message.startsWith("AND")
        ? { kind: "word", words: ["AND", "OR", ")"] }
        : { kind: "nothing" };
}

function choicesFor(
    expectation: Expectation,
    definition: Class | undefined,
    classNames: readonly string[],
): Choice[] {
    switch (expectation.kind) {
        case "operand":
            return [...propertyChoices(definition), { text: "NOT" }, { text: "(" }];
        case "operator":
            return operatorsFor(expectation.property).map((text) => ({ text }));
        case "value":
            return valueChoices(expectation.property);
        case "word":
            return expectation.words.map((text) => ({ text }));
        case "className":
            return classNames.map((text) => ({ text }));
        case "nothing":
            return [];
    }
}

function propertyChoices(definition: Class | undefined): Choice[] {
    return (definition?.properties ?? [])
        .filter(({ isArray }) => !isArray)
        .map(({ name, type }) => ({ text: name, detail: type }))
        .sort((left, right) => left.text.localeCompare(right.text));
}

function operatorsFor(property: Property | undefined): string[] {
    const equality = ["=", "<>"];
    const order = ["<", "<=", ">", ">="];
    const nulls = ["IS NULL", "IS NOT NULL"];
    if (!property) return [...equality, ...order, "LIKE", "ISA", ...nulls];
    if (property.isArray) return nulls;
    if (property.embedded || named(property.qualifiers, "EmbeddedInstance")) {
        return ["ISA", ...nulls];
    }
    switch (property.type) {
        case "boolean":
        case "reference":
            return [...equality, ...nulls];
        case "string":
        case "char16":
            return [...equality, "LIKE", ...order, ...nulls];
        default:
            return [...equality, ...order, ...nulls];
    }
}

function valueChoices(property: Property | undefined): Choice[] {
    if (!property) return [];
    if (property.type === "boolean") return [{ text: "TRUE" }, { text: "FALSE" }];
    const isText = constantKind(property.type) === "string";
    return valueMapOf(property).map(({ value, words: detail }) => ({
        text: isText ? `"${value.replace(/["\\]/g, "\\$&")}"` : value,
        detail,
    }));
}

/** The choices that what was typed begins, by themselves or by what they mean. */
function matching(choices: readonly Choice[], typed: string): Choice[] {
    const word = typed.replace(/^["']/, "").toLowerCase();
    const begins = (text: string | undefined) =>
        text !== undefined && text.replace(/^["']/, "").toLowerCase().startsWith(word);
    return choices.filter(({ text, detail }) => begins(text) || (word !== "" && begins(detail)));
}
