export function App() {
    return <main />;
}
