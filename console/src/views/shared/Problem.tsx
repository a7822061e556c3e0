import { CimError, HttpError } from "../../cim/client";
import { statusName } from "../../cim/statusNames";
import { Icon } from "./Icon";

/** What failed, in a heading and the server's own sentence. */
export function problemText(error: unknown): { title: string; text: string } {
    if (error instanceof CimError) return { title: statusName(error.code), text: error.message };
    if (error instanceof HttpError) {
        const detail = error.cimError ? `, ${error.cimError}` : "";
        return { title: `HTTP ${error.status}${detail}`, text: error.message };
    }
    if (error instanceof TypeError && /fetch|network/i.test(error.message)) {
        return { title: "No connection", text: "The server does not answer." };
    }
    return {
        title: "That did not work",
        text: error instanceof Error ? error.message : String(error),
    };
}

/** A failed request where it happened, with another try. */
export function Problem({ error, retry }: { error: unknown; retry?: () => void }) {
    const { title, text } = problemText(error);
    return (
        <div class="problem" role="alert">
            <Icon name="alert" />
            <div>
                <strong>{title}</strong>
                <p>{text}</p>
            </div>
            {retry && (
                <button class="button" type="button" onClick={retry}>
                    Try again
                </button>
            )}
        </div>
    );
}
