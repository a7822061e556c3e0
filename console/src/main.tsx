import { render } from "preact";

import { App } from "./views/App";

const root = document.getElementById("app");
if (root) render(<App />, root);
