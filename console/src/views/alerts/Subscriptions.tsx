import { useEffect, useState } from "preact/hooks";

import {
    queuesOf,
    subscriptionsOf,
    unsubscribe,
    type Subscription,
} from "../../live/subscriptions";
import { client } from "../../state/server";
import { writing } from "../../state/settings";
import { pathKey } from "../../cim/names";
import { Icon } from "../shared/Icon";
import { Loaded } from "../shared/Loaded";
import { Problem } from "../shared/Problem";
import { useLoad } from "../shared/useLoad";

/** The server's subscriptions; those that were made here can be ended with a click. */
export function Subscriptions({ interop, turn }: { interop: string; turn: number }) {
    const load = useLoad(() => subscriptionsOf(client, interop), [interop, turn]);
    const [failure, setFailure] = useState<unknown>(undefined);
    const remove = async (subscription: Subscription) => {
        setFailure(undefined);
        try {
            await unsubscribe(client, subscription);
        } catch (error) {
            setFailure(error);
        }
        load.reload();
    };
    return (
        <section class="panel" aria-label="Subscriptions">
            <h2>Subscriptions</h2>
            {failure !== undefined && <Problem error={failure} />}
            <Loaded load={load} what="Looking for subscriptions">
                {(found) =>
                    found.length === 0 ? (
                        <p class="muted">There are none.</p>
                    ) : (
                        <ul class="subscriptions">
                            {found.map((one) => (
                                <li key={pathKey(one.path)}>
                                    <OneSubscription one={one} onRemove={() => void remove(one)} />
                                </li>
                            ))}
                        </ul>
                    )
                }
            </Loaded>
        </section>
    );
}

function OneSubscription({ one, onRemove }: { one: Subscription; onRemove: () => void }) {
    const mayRemove = one.isOwn || writing.value;
    const reason = "Others' subscriptions can be removed while the Write switch is on.";
    return (
        <>
            <div class="subscription">
                <code>{one.query || "no query"}</code>
                <p class="muted">
                    {one.name} to {one.listener} ({one.destination || "unknown destination"})
                    {one.namespaces.length > 0 && `, from ${one.namespaces.join(", ")}`}
                    {!one.isEnabled && ", disabled"}
                </p>
            </div>
            <button
                class="button quiet square"
                type="button"
                disabled={!mayRemove}
                title={mayRemove ? `Remove ${one.name}` : reason}
                aria-label={`Remove ${one.name}`}
                onClick={onRemove}
            >
                <Icon name="trash" />
            </button>
        </>
    );
}

const lookAgain = 5000;

/** How the queues of all listeners stand, looked at while the page is. */
export function Queues({ interop, turn }: { interop: string; turn: number }) {
    const load = useLoad(() => queuesOf(client, interop), [interop, turn]);
    const { reload } = load;
    useEffect(() => {
        const timer = setInterval(() => document.hidden || reload(), lookAgain);
        return () => clearInterval(timer);
    }, [reload]);
    return (
        <section class="panel" aria-label="Queues of listeners">
            <h2>Queues</h2>
            <Loaded load={load} what="Looking at the queues">
                {({ queues, lines }) => (
                    <>
                        {queues.length > 0 && (
                            <div class="scrolled" tabIndex={0} role="group" aria-label="Queues">
                                <table class="plain">
                                    <thead>
                                        <tr>
                                            <th scope="col">Raised</th>
                                            <th scope="col">Sent</th>
                                            <th scope="col">Waiting</th>
                                            <th scope="col">Retries</th>
                                            <th scope="col">Dropped</th>
                                        </tr>
                                    </thead>
                                    {queues.map((queue) => (
                                        <tbody key={queue.listener}>
                                            <tr>
                                                <th scope="rowgroup" colSpan={5}>
                                                    {queue.listener}
                                                </th>
                                            </tr>
                                            <tr>
                                                <td>{queue.raised}</td>
                                                <td>{queue.sent}</td>
                                                <td class={queue.waiting ? "tone-warn" : ""}>
                                                    {queue.waiting}
                                                </td>
                                                <td>{queue.retries}</td>
                                                <td class={queue.dropped ? "tone-error" : ""}>
                                                    {queue.dropped}
                                                </td>
                                            </tr>
                                        </tbody>
                                    ))}
                                </table>
                            </div>
                        )}
                        {lines.map((line) => (
                            <p key={line}>{line}</p>
                        ))}
                        {queues.length + lines.length === 0 && (
                            <p class="muted">The server tells of no queues.</p>
                        )}
                    </>
                )}
            </Loaded>
        </section>
    );
}
