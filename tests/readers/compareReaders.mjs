// Compares, table by table and as sets of rows, what our engine reads from Access files with what an
// independent reader finds there.
//
//   node compareReaders.mjs mdb-reader|mdbtools DUMP_PROGRAM MODULES FILE|FOLDER...
//
// fixtures:FOLDER stands for the folder in VELLUMS_FIXTURES, or else for this one. MODULES is the folder
// that holds node_modules. Status 77: skipped, because the reader or every file is
// absent. Encrypted files are passed over, and so are calculated columns, which neither reader knows, and complex
// ones that a reader does not know.

import { spawnSync } from "node:child_process";
import { existsSync, readFileSync, readdirSync, statSync } from "node:fs";
import { basename, join } from "node:path";
import { pathToFileURL } from "node:url";

import { openWithMdbReader } from "./mdbReader.mjs";
import { openWithMdbTools } from "./mdbTools.mjs";

const kSkipped = 77;
const [reader, dumpProgram, modules, ...places] = process.argv.slice(2);

function skip(why) {
  console.log(`skipped: ${why}`);
  process.exit(kSkipped);
}

function filesOf(given) {
  const place = given.startsWith("fixtures:") ? process.env.VELLUMS_FIXTURES || given.slice(9) : given;
  if (!existsSync(place)) return [];
  if (!statSync(place).isDirectory()) return [place];
  return readdirSync(place)
    .filter((name) => /\.(mdb|accdb)$/i.test(name) && !/-enc\./i.test(name))
    .map((name) => join(place, name));
}

// Our own reading: tables with their columns and rows.
function dump(file) {
  const run = spawnSync(dumpProgram, [file], { maxBuffer: 1 << 30, encoding: "utf8" });
  if (run.status !== 0) throw new Error(`${basename(file)}: our engine refuses it: ${run.stderr}${run.error ?? ""}`);
  const tables = [];
  for (const line of run.stdout.split("\n")) {
    if (line === "") continue;
    const value = JSON.parse(line);
    if (Array.isArray(value)) tables.at(-1).rows.push(value);
    else tables.push({ ...value, rows: [] });
  }
  return tables;
}

function leaveOutUnknown(table, other) {
  const kept = table.columns.map((column) => !column.calculated && !other.leavesOut(column));
  table.columns = table.columns.filter((_, i) => kept[i]);
  table.rows = table.rows.map((row) => row.filter((_, i) => kept[i]));
}

function shortened(text) {
  return text.length > 300 ? `${text.slice(0, 300)}... (${text.length})` : text;
}

// The rows that only one side has.
function difference(ours, theirs) {
  const counts = new Map();
  for (const row of ours) counts.set(row, (counts.get(row) ?? 0) + 1);
  const extra = [];
  for (const row of theirs) {
    const count = counts.get(row) ?? 0;
    if (count === 0) extra.push(row);
    else counts.set(row, count - 1);
  }
  const missing = [...counts].filter(([, count]) => count > 0).map(([row]) => row);
  return { missing, extra };
}

let faults = 0;
function fault(text) {
  ++faults;
  console.log(text);
}

async function opener() {
  if (reader === "mdbtools") {
    if (spawnSync("mdb-export", ["--version"]).error) skip("mdbtools is not installed");
    return openWithMdbTools;
  }
  const entry = join(modules, "node_modules/mdb-reader/lib/node/index.js");
  if (!existsSync(entry)) skip("mdb-reader is not installed");
  const { default: MDBReader } = await import(pathToFileURL(entry));
  return (file) => openWithMdbReader(MDBReader, file);
}

const open = await opener();
const files = places.flatMap(filesOf);
if (files.length === 0) skip("no Access files to read");

let tables = 0;
let rows = 0;
const passedOver = [];
for (const file of files) {
  const other = open(file);
  const names = new Set(other.tables);
  for (const ours of dump(file)) {
    const place = `${basename(file)}, ${ours.table}`;
    names.delete(ours.table);
    if (ours.refused) {
      passedOver.push(`${place}: ${ours.refused}`);
      continue;
    }
    leaveOutUnknown(ours, other);
    const why = other.cannotRead(ours);
    if (why) {
      passedOver.push(`${place}: ${why}`);
      continue;
    }
    const theirs = other.rows(ours).map((row) => JSON.stringify(row));
    const mine = ours.rows.map((row) => JSON.stringify(other.comparable(row, ours)));
    const { missing, extra } = difference(mine, theirs);
    for (const row of missing.slice(0, 3)) fault(`${place}: ${reader} lacks ${shortened(row)}`);
    for (const row of extra.slice(0, 3)) fault(`${place}: ${reader} has also ${shortened(row)}`);
    ++tables;
    rows += theirs.length;
  }
  for (const name of names) fault(`${basename(file)}: our engine lacks the table ${name}`);
}
console.log(`${reader}: ${files.length} files, ${tables} tables, ${rows} rows compared`);
for (const line of passedOver) console.log(`  passed over: ${line}`);
if (tables === 0) fault("nothing was compared");
process.exit(faults === 0 ? 0 : 1);
