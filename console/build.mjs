// node build.mjs OUT: makes the page of src/ in the folder OUT, with a compressed twin of each file.
// The same sources give the same bytes. Fails when the page is over its size.

import { mkdir, readFile, readdir, writeFile } from "node:fs/promises";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";

import * as esbuild from "esbuild";

const sizeLimit = 350 * 1024; // of all files together, compressed

const here = dirname(fileURLToPath(import.meta.url));
const out = process.argv[2];
if (!out) {
    console.error("usage: node build.mjs OUT");
    process.exit(2);
}

/** The folders of the packages that are part of the bundle. */
function packagesOf(metafile) {
    const names = Object.keys(metafile.inputs)
        .map((input) => /^node_modules\/((?:@[^/]+\/)?[^/]+)\//.exec(input)?.[1])
        .filter((name) => name !== undefined);
    return [...new Set(names)].sort();
}

/** What the licences of these packages want every copy to carry. */
async function noticesOf(packages) {
    const notices = [];
    for (const name of packages) {
        const folder = join(here, "node_modules", name);
        const { version } = JSON.parse(await readFile(join(folder, "package.json"), "utf8"));
        const file = (await readdir(folder)).find((entry) => /^licen[cs]e/i.test(entry));
        if (!file) throw new Error(`${name}: has no licence text`);
        const text = (await readFile(join(folder, file), "utf8")).replaceAll("*/", "* /").trim();
        notices.push(`${name} ${version}\n\n${text}\n`);
    }
    return notices.length ? `/*!\n${notices.join("\n")}*/\n` : "";
}

const common = {
    absWorkingDir: here,
    bundle: true,
    minify: true,
    target: "es2022",
    metafile: true,
    write: false,
    legalComments: "none",
    logLevel: "warning",
};
const script = await esbuild.build({
    ...common,
    entryPoints: ["src/main.tsx"],
    format: "iife",
    jsx: "automatic",
    jsxImportSource: "preact",
    define: { "process.env.NODE_ENV": '"production"' },
});
const style = await esbuild.build({ ...common, entryPoints: ["src/style/main.css"] });

/** The one text that a build made, with its notices behind it. */
async function textOf(build) {
    return build.outputFiles[0].text + (await noticesOf(packagesOf(build.metafile)));
}

const files = {
    "index.html": await readFile(join(here, "src/index.html"), "utf8"),
    "console.js": await textOf(script),
    "console.css": await textOf(style),
};

await mkdir(out, { recursive: true });
let size = 0;
for (const [name, text] of Object.entries(files)) {
    // zlib writes no time, and the byte for the system is the same everywhere once it is set here.
    const compressed = gzipSync(text, { level: 9 });
    compressed[9] = 255;
    size += compressed.length;
    await writeFile(join(out, name), text);
    await writeFile(join(out, `${name}.gz`), compressed);
}
if (size > sizeLimit) {
    console.error(`build.mjs: the page has ${size} bytes compressed; ${sizeLimit} are allowed`);
    process.exit(1);
}
