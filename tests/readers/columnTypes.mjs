// The types of columns, by their code in the file.
export const Type = {
  Boolean: 0x01,
  Byte: 0x02,
  Integer: 0x03,
  Long: 0x04,
  Currency: 0x05,
  Single: 0x06,
  Double: 0x07,
  Date: 0x08,
  Binary: 0x09,
  Text: 0x0a,
  Ole: 0x0b,
  Memo: 0x0c,
  Guid: 0x0f,
  Decimal: 0x10,
  FixedBinary: 0x11,
  Complex: 0x12,
  BigInteger: 0x13,
  ExtendedDate: 0x14,
};

// A decimal number without zeros that say nothing.
export function plainDecimal(text) {
  let result = text;
  if (result.includes(".")) result = result.replace(/0+$/, "").replace(/\.$/, "");
  return result === "-0" || result === "" ? "0" : result;
}
