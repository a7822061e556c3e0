// node run.mjs PACKAGES FILE.test.ts: runs one file of tests under node.
// PACKAGES is the folder that has node_modules, and page/ for tests in a browser: the build's, or console/
// where npm ci and node build.mjs page were run there.

import { spawnSync } from "node:child_process";
import { mkdtempSync, rmSync } from "node:fs";
import { createRequire } from "node:module";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";

const [packages, file] = process.argv.slice(2);
if (!packages || !file) {
    console.error("usage: node run.mjs PACKAGES FILE.test.ts");
    process.exit(2);
}

const here = dirname(fileURLToPath(import.meta.url));
const modules = resolve(packages, "node_modules");
const esbuild = createRequire(join(modules, "x"))("esbuild");

// From there node finds what is not bundled.
const folder = mkdtempSync(join(resolve(packages), ".test-"));
try {
    const bundle = join(folder, "test.mjs");
    await esbuild.build({
        entryPoints: [resolve(here, file)],
        bundle: true,
        format: "esm",
        platform: "node",
        target: "node18",
        sourcemap: "inline",
        jsx: "automatic",
        jsxImportSource: "preact",
        nodePaths: [modules],
        external: ["axe-core", "pixelmatch", "playwright-core", "pngjs"],
        logLevel: "warning",
        outfile: bundle,
    });
    const { status } = spawnSync(process.execPath, ["--enable-source-maps", bundle], {
        stdio: "inherit",
        env: {
            ...process.env,
            PYL_SOURCE_FOLDER: resolve(here, "../.."),
            PYL_PAGE_FOLDER: resolve(packages, "page"),
        },
    });
    process.exitCode = status ?? 1;
} finally {
    rmSync(folder, { recursive: true, force: true });
}
