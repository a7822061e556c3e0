export function AlertsView() {
    return <p>Alerts</p>;
}
