// What mdbtools finds in a file, in the form of our own dump.
//
// mdb-export prints at most 200,000 bytes of a value, ends a text at U+0000, prints two question marks
// for a character outside the basic plane, nonsense for dates before 1899-12-30, and the same for an
// empty text and NULL. It ends a binary value at a zero byte, and prints a GUID as the bytes of its text
// without the last hyphen. comparable() brings our values into that form.

import { spawnSync } from "node:child_process";

import { Type, plainDecimal } from "./columnTypes.mjs";

const kField = "<|F|>";
const kRow = "<|R|>";
const kNull = "<NULL>";
const kMostBytes = 190000; // below its limit, whatever the encoding
const kUnreadable = "(date before 1899-12-30)";

function run(program, options) {
  const env = { ...process.env, LC_ALL: "C.UTF-8" }; // names of tables are given in UTF-8, whatever the locale
  const result = spawnSync(program, options, { env, maxBuffer: 1 << 30, encoding: "utf8" });
  if (result.status !== 0) throw new Error(`${program} ${options.join(" ")}: ${result.stderr}`);
  return result.stdout;
}

function cutText(text) {
  const printed = text.replace(/[\ud800-\udbff][\udc00-\udfff]/g, "??").replace(/\0.*$/s, "");
  // Cut by bytes of UTF-8, at three for each unit at most.
  return printed.slice(0, Math.floor(kMostBytes / 3));
}

function theirValue(text, type) {
  if (text === kNull || text === "") return type === Type.Boolean ? false : null;
  switch (type) {
    case Type.Boolean:
      return text !== "0";
    case Type.Single:
    case Type.Double:
      return Number(Number(text).toPrecision(type === Type.Single ? 6 : 14));
    case Type.Currency:
    case Type.Decimal:
      return plainDecimal(text);
    case Type.Text:
    case Type.Memo:
      return cutText(text);
    case Type.Guid:
      return Buffer.from(text, "hex").toString("latin1").replaceAll("-", "");
    case Type.Binary:
    case Type.Ole:
      return text.toLowerCase().slice(0, kMostBytes);
    default:
      return text;
  }
}

function ourValue(value, type) {
  if (value === null || value === "") return null;
  switch (type) {
    case Type.Single:
    case Type.Double:
      return Number(Number(value).toPrecision(type === Type.Single ? 6 : 14));
    case Type.Date:
      return value.slice(0, 19);
    case Type.Text:
    case Type.Memo:
      return cutText(value) || null;
    case Type.Guid:
      return value.replaceAll("-", "");
    case Type.Binary:
      return value.replace(/^((?:..)*?)00.*$/, "$1") || null;
    case Type.Ole:
      return value.slice(0, kMostBytes);
    default:
      return value;
  }
}

export function openWithMdbTools(file) {
  return {
    tables: run("mdb-tables", ["-1", "-S", file])
      .split("\n")
      .filter((name) => name !== ""),
    leavesOut: ({ stored }) => stored === Type.Complex,
    cannotRead({ columns }) {
      const strange = columns.find(({ stored }) =>
        [Type.FixedBinary, Type.BigInteger, Type.ExtendedDate].includes(stored)
      );
      return strange ? `mdbtools does not know the type of ${strange.name}` : null;
    },
    rows({ table, columns, rows }) {
      const format = "%Y-%m-%d %H:%M:%S";
      const options = ["-Q", "-d", kField, "-R", kRow, "-0", kNull, "-b", "hex", "-T", format, "-D", format];
      const lines = run("mdb-export", [...options, file, table]).split(kRow);
      const header = lines.shift().split(kField);
      const places = columns.map(({ name }) => header.indexOf(name));
      lines.pop();
      const early = columns.map((_, i) => new Set(rows.map((row) => row[i]).filter((value) => value < "1899-12-30")));
      return lines.map((line) => {
        const fields = line.split(kField);
        return columns.map(({ type }, i) => {
          const value = theirValue(fields[places[i]], type);
          // Nonsense cannot be told from a date: where we see an early one, no date counts.
          return type === Type.Date && early[i].size > 0 && value !== null ? kUnreadable : value;
        });
      });
    },
    comparable(row, { columns, rows }) {
      return row.map((value, i) => {
        const early = columns[i].type === Type.Date && rows.some((other) => other[i] !== null && other[i] < "1899-12-30");
        return early && value !== null ? kUnreadable : ourValue(value, columns[i].type);
      });
    },
  };
}
