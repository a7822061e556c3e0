import type { ComponentChildren } from "preact";
import { useEffect, useId, useRef } from "preact/hooks";

import { Icon } from "./Icon";

/** Asks or shows something in front of the page until it is closed; Escape closes it. */
export function Dialog({
    title,
    onClose,
    children,
    foot,
}: {
    title: string;
    onClose: () => void;
    children: ComponentChildren;
    foot?: ComponentChildren;
}) {
    const dialog = useRef<HTMLDialogElement>(null);
    const heading = useId();
    useEffect(() => {
        const before = document.activeElement;
        dialog.current?.showModal();
        return () => {
            if (before instanceof HTMLElement) before.focus();
        };
    }, []);
    return (
        <dialog ref={dialog} aria-labelledby={heading} onClose={onClose}>
            <div class="dialog-head">
                <h2 id={heading}>{title}</h2>
                <button
                    class="button quiet square"
                    type="button"
                    aria-label="Close"
                    onClick={onClose}
                >
                    <Icon name="close" />
                </button>
            </div>
            <div class="dialog-body">{children}</div>
            {foot && <div class="dialog-foot">{foot}</div>}
        </dialog>
    );
}
