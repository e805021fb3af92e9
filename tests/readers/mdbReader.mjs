// What the package mdb-reader finds in a file, in the form of our own dump.

import { readFileSync } from "node:fs";

import { Type, plainDecimal } from "./columnTypes.mjs";

const kDaysToUnix = 25569; // from 30 December 1899 to 1 January 1970

// mdb-reader takes the fraction of a day before 30 December 1899 as counting backwards, and rounds to
// milliseconds: its number is made of ours in the same way.
function milliseconds(ourDate) {
  return Math.round((Number(ourDate.split(" ")[2]) - kDaysToUnix) * 86400 * 1000);
}

function valueText(value, { type, stored }) {
  if (value === null || value === undefined) return type === Type.Boolean ? false : null;
  if (stored === Type.Complex) return value.map(({ name }) => name).join(";") || null;
  switch (type) {
    case Type.Boolean:
      return value;
    case Type.Date:
      return value.getTime();
    case Type.Currency:
    case Type.Decimal:
      return plainDecimal(String(value));
    case Type.Guid:
      return `{${value.toUpperCase()}}`;
    case Type.Binary:
    case Type.Ole:
      return value.toString("hex");
    case Type.Single:
    case Type.Double:
      return Number(value);
    default:
      return String(value);
  }
}

export function openWithMdbReader(MDBReader, file) {
  const reader = new MDBReader(readFileSync(file));
  // Of complex columns it knows attachments only, whose values have names of files.
  function isAttachment(name) {
    const flat = reader.getTableNames({ normalTables: true, systemTables: true }).filter((other) => other.endsWith(`_${name}`));
    return flat.some((other) => reader.getTable(other).getColumnNames().includes("FileName"));
  }
  return {
    tables: reader.getTableNames({ normalTables: true, systemTables: true, linkedTables: false }),
    leavesOut: ({ name, stored }) => stored === Type.Complex && !isAttachment(name),
    cannotRead({ columns }) {
      const strange = columns.find(({ stored }) => [Type.FixedBinary, Type.ExtendedDate].includes(stored));
      return strange ? `mdb-reader does not know the type of ${strange.name}` : null;
    },
    rows({ table, columns }) {
      return reader
        .getTable(table)
        .getData({ columns: columns.map(({ name }) => name) })
        .map((row) => columns.map((column) => valueText(row[column.name], column)));
    },
    comparable(row, { columns }) {
      return row.map((value, i) => {
        if (value === null) return null;
        if (columns[i].type === Type.Date) return milliseconds(value);
        if ([Type.Single, Type.Double].includes(columns[i].type)) return Number(value);
        return value;
      });
    },
  };
}
