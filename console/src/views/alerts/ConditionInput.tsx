import { useId, useRef, useState } from "preact/hooks";

import type { Class } from "../../cim/model";
import { checkCondition, completeCondition, type Choice } from "../../cim/wql";

const mostChoices = 50;

/** A condition of WQL: checked at each key, completed from the class. */
export function ConditionInput({
    value,
    definition,
    classNames,
    onChange,
}: {
    value: string;
    definition: Class | undefined;
    classNames: readonly string[];
    onChange: (value: string) => void;
}) {
    const id = useId();
    const input = useRef<HTMLInputElement>(null);
    const [cursor, setCursor] = useState(0);
    const [isOpen, setOpen] = useState(false);
    const [at, setAt] = useState(-1);
    const { start, end, choices } = completeCondition(value, cursor, definition, classNames);
    const shown = isOpen ? choices.slice(0, mostChoices) : [];
    const problem = checkCondition(value, definition);

    const follow = () => setCursor(input.current?.selectionStart ?? value.length);
    const choose = ({ text }: Choice) => {
        const behind = value.slice(end);
        const space = behind.startsWith(" ") ? "" : " ";
        onChange(value.slice(0, start) + text + space + behind);
        const place = start + text.length + 1;
        setCursor(place);
        setAt(-1);
        setOpen(false);
        // The text is in the field only after it was drawn.
        requestAnimationFrame(() => {
            input.current?.focus();
            input.current?.setSelectionRange(place, place);
        });
    };
    const onKeyDown = (event: KeyboardEvent) => {
        switch (event.key) {
            case "ArrowDown":
            case "ArrowUp": {
                setOpen(true);
                const count = Math.min(choices.length, mostChoices);
                const step = event.key === "ArrowDown" ? 1 : -1;
                if (count) setAt(at < 0 && step < 0 ? count - 1 : (at + step + count) % count);
                break;
            }
            case "Enter":
            case "Tab": {
                const choice = shown[at];
                if (!choice) return;
                choose(choice);
                break;
            }
            case "Escape":
                if (!shown.length) return;
                setOpen(false);
                setAt(-1);
                break;
            default:
                return;
        }
        event.preventDefault();
    };
    return (
        <div class="condition">
            <label for={id}>Condition (WQL, behind WHERE)</label>
            <div class="condition-field">
                <input
                    ref={input}
                    id={id}
                    class="field mono"
                    type="text"
                    role="combobox"
                    autocomplete="off"
                    spellcheck={false}
                    placeholder="all of them"
                    aria-autocomplete="list"
                    aria-expanded={shown.length > 0}
                    aria-controls={`${id}-list`}
                    aria-activedescendant={shown[at] ? `${id}-${at}` : undefined}
                    aria-invalid={problem !== undefined}
                    aria-describedby={`${id}-problem`}
                    value={value}
                    onInput={(event) => {
                        onChange(event.currentTarget.value);
                        follow();
                        setOpen(true);
                        setAt(-1);
                    }}
                    onKeyDown={onKeyDown}
                    onKeyUp={follow}
                    onClick={() => {
                        follow();
                        setOpen(true);
                    }}
                    onBlur={() => setOpen(false)}
                />
                <ul
                    id={`${id}-list`}
                    role="listbox"
                    aria-label="What may follow"
                    class="completions"
                    hidden={shown.length === 0}
                >
                    {shown.map((choice, index) => (
                        <li
                            key={choice.text}
                            id={`${id}-${index}`}
                            role="option"
                            aria-selected={index === at}
                            // The field keeps the focus.
                            onMouseDown={(event) => {
                                event.preventDefault();
                                choose(choice);
                            }}
                        >
                            <span class="mono">{choice.text}</span>
                            {choice.detail && <span class="muted">{choice.detail}</span>}
                        </li>
                    ))}
                </ul>
            </div>
            <div id={`${id}-problem`} class="condition-problem" aria-live="polite">
                {problem && (
                    <>
                        <span class="mono" aria-hidden="true">
                            {value.slice(Math.max(0, problem.position - 24), problem.position)}
                            <mark>
                                {value.slice(problem.position, problem.position + problem.length) ||
                                    "?"}
                            </mark>
                        </span>
                        <span>
                            {problem.message}
                            <span class="hidden-text"> at character {problem.position + 1}</span>
                        </span>
                    </>
                )}
            </div>
        </div>
    );
}
