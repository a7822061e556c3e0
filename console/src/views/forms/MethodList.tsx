import { useState } from "preact/hooks";

import { isObjectPath, type CimValue, type Method, type ObjectPath } from "../../cim/model";
import { hasQualifier, named, pathText, qualifierOf } from "../../cim/names";
import { valueText, type Described } from "../../cim/valueText";
import { instanceHref } from "../../state/routes";
import { client } from "../../state/server";
import { writing } from "../../state/settings";
import { Icon } from "../shared/Icon";
import { FieldInput } from "./FieldInput";
import { Question } from "./Question";
import { useFields } from "./useFields";

/** Methods, each with a form of its input parameters. */
export function MethodList({ path, methods }: { path: ObjectPath; methods: readonly Method[] }) {
    return (
        <ul class="methods">
            {methods.map((method) => (
                <li key={method.name}>
                    <details>
                        <summary>
                            <strong>{method.name}</strong>
                        </summary>
                        <MethodForm path={path} method={method} />
                    </details>
                </li>
            ))}
        </ul>
    );
}

interface Result {
    returnValue: CimValue;
    out: Record<string, CimValue>;
    micros: number;
}

function MethodForm({ path, method }: { path: ObjectPath; method: Method }) {
    // DSP0004: IN is TRUE where it is not written.
    const inputs = method.parameters.filter((one) => qualifierOf(one, "In")?.value !== false);
    const fields = useFields(inputs);
    const [asking, setAsking] = useState(false);
    const [result, setResult] = useState<Result>();
    const about = qualifierOf(method, "Description")?.value;
    const run = async () => {
        setResult(undefined);
        const args = (fields.values() ?? [])
            .filter(({ value }) => value !== null)
            .map(({ field: { name, type, isArray }, value }) => ({ name, type, isArray, value }));
        const begun = performance.now();
        const answer = await client.invokeMethod(path, method, args);
        setResult({ ...answer, micros: (performance.now() - begun) * 1000 });
    };
    return (
        <form
            class="method-form"
            onSubmit={(event) => {
                event.preventDefault();
                if (writing.value && fields.values()) setAsking(true);
            }}
        >
            {about !== undefined && <p class="muted">{valueText(about)}</p>}
            {inputs.map((parameter) => (
                <FieldInput
                    key={parameter.name}
                    field={parameter}
                    namespace={path.namespace ?? ""}
                    text={fields.text(parameter)}
                    error={fields.error(parameter)}
                    onText={(text) => fields.set(parameter, text)}
                />
            ))}
            <div class="toolbar">
                <button class="button primary" type="submit" disabled={!writing.value}>
                    <Icon name="play" />
                    Invoke
                </button>
                {!writing.value && <span class="muted">The write switch is off.</span>}
            </div>
            {result && <MethodResult method={method} result={result} />}
            {asking && (
                <Question
                    title={`Invoke ${method.name}?`}
                    yes="Invoke"
                    onYes={run}
                    onClose={() => setAsking(false)}
                >
                    <p>
                        On <code>{pathText(path)}</code>
                    </p>
                </Question>
            )}
        </form>
    );
}

function MethodResult({ method, result }: { method: Method; result: Result }) {
    const out = Object.entries(result.out);
    return (
        <div class="method-result" role="status">
            <h3>
                Returned <ValueOf value={result.returnValue} described={method} />
                <span class="muted"> after {(result.micros / 1000).toFixed(1)} ms</span>
            </h3>
            {out.length > 0 && (
                <dl class="value-map">
                    {out.map(([name, value]) => (
                        <div key={name}>
                            <dt>{name}</dt>
                            <dd>
                                <ValueOf value={value} described={named(method.parameters, name)} />
                            </dd>
                        </div>
                    ))}
                </dl>
            )}
            {!out.length && method.parameters.some((one) => hasQualifier(one, "Out")) && (
                <p class="muted">No output parameter came back.</p>
            )}
        </div>
    );
}

function ValueOf({ value, described }: { value: CimValue; described: Described | undefined }) {
    if (value === null) return <span class="muted">NULL</span>;
    if (isObjectPath(value)) return <a href={instanceHref(value)}>{pathText(value)}</a>;
    return <>{valueText(value, described)}</>;
}
