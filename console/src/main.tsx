import { render } from "preact";

import { startLive } from "./live/live";
import { followAddress } from "./state/routes";
import { followTheme } from "./state/settings";
import { App } from "./views/App";
import { followSearchKey } from "./views/searchKey";

followTheme();
followAddress();
followSearchKey();
startLive();
const root = document.getElementById("app");
if (root) render(<App />, root);
