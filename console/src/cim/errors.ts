/** A failure that the server told as a CIM status. */
export class CimError extends Error {
    readonly code: number;

    constructor(code: number, message: string) {
        super(message);
        this.name = "CimError";
        this.code = code;
    }
}

/** A refusal of the HTTP layer, with the server's own sentence. */
export class HttpError extends Error {
    readonly status: number;
    readonly cimError?: string;

    constructor(status: number, message: string, cimError?: string) {
        super(message);
        this.name = "HttpError";
        this.status = status;
        if (cimError !== undefined) this.cimError = cimError;
    }
}
