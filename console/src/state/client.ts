import { CimClient } from "../cim/client";

/** The one client of the page: the server that the page came from. */
export const client = new CimClient();
