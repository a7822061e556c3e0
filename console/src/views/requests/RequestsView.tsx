export function RequestsView() {
    return <p>Requests</p>;
}
