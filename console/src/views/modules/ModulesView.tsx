export function ModulesView() {
    return <p>Modules</p>;
}
