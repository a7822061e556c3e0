// node form.mjs PACKAGES: holds the console's sources and tests against their types and their format.
// Works on a copy that has PACKAGES/node_modules above it, where the packages are looked for.

import { spawnSync } from "node:child_process";
import { cpSync, mkdtempSync, rmSync, symlinkSync } from "node:fs";
import { tmpdir } from "node:os";
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

const copy = mkdtempSync(join(tmpdir(), "console-form-"));
let failures = 0;
try {
    cpSync(join(root, "console"), join(copy, "console"), { recursive: true, filter: isSource });
    cpSync(join(root, ".prettierrc.json"), join(copy, ".prettierrc.json"));
    cpSync(join(root, "tests/console"), join(copy, "tests/console"), { recursive: true });
    symlinkSync(modules, join(copy, "node_modules"));
    const run = (program, ...words) => {
        const { status } = spawnSync(process.execPath, [join(modules, program), ...words], {
            cwd: copy,
            stdio: "inherit",
        });
        if (status !== 0) failures += 1;
    };
    run("typescript/bin/tsc", "-p", "console");
    run("typescript/bin/tsc", "-p", "tests/console");
    run("prettier/bin/prettier.cjs", "--check", "console", "tests/console");
} finally {
    rmSync(copy, { recursive: true, force: true });
}
if (failures)
    console.error("Mend the format by: npx prettier --write . ../tests/console, in console/");
process.exitCode = failures ? 1 : 0;
