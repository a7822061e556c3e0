// node form.mjs PACKAGES: holds the console's sources and tests against their types and their format.
// Works on a copy that has PACKAGES/node_modules above it, where the packages are looked for. What the programs know of
// unchanged sources stays beside the copy.

import { spawnSync } from "node:child_process";
import { cpSync, rmSync } from "node:fs";
import { dirname, join, relative, resolve } from "node:path";
import { fileURLToPath } from "node:url";

const packages = process.argv[2];
if (!packages) {
    console.error("usage: node form.mjs PACKAGES");
    process.exit(2);
}

const root = resolve(dirname(fileURLToPath(import.meta.url)), "../..");
const modules = resolve(packages, "node_modules");
// Packages, a page, and what other tests are bundled to may lie beside the sources.
const isSource = (path) =>
    !/^(node_modules|page|\.test-)/.test(relative(join(root, "console"), path));

const copy = resolve(packages, "form");
for (const tree of ["console", "tests/console"]) {
    rmSync(join(copy, tree), { recursive: true, force: true });
    cpSync(join(root, tree), join(copy, tree), { recursive: true, filter: isSource });
}
cpSync(join(root, ".prettierrc.json"), join(copy, ".prettierrc.json"));

let failures = 0;
const run = (program, ...words) => {
    const { status } = spawnSync(process.execPath, [join(modules, program), ...words], {
        cwd: copy,
        stdio: "inherit",
    });
    if (status !== 0) failures += 1;
};
run("typescript/bin/tsc", "-p", "console", "--incremental", "--tsBuildInfoFile", "console.types");
run(
    "typescript/bin/tsc",
    "-p",
    "tests/console",
    "--incremental",
    "--tsBuildInfoFile",
    "tests.types",
);
run(
    "prettier/bin/prettier.cjs",
    "--check",
    "--cache",
    "--cache-strategy=content",
    "--cache-location=console.formats",
    "console",
    "tests/console",
);
if (failures)
    console.error("Mend the format by: npx prettier --write . ../tests/console, in console/");
process.exitCode = failures ? 1 : 0;
