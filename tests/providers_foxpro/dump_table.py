# Prints a table's live rows as the tests write them. Usage: dump_table.py dbfread|dbf file.dbf
import datetime, decimal, sys


def number(value):
    if isinstance(value, float):
        value = decimal.Decimal(repr(value))
    text = format(decimal.Decimal(value), "f")
    if "." in text:
        text = text.rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def plain(value, kind):
    if value is None:
        return {"N": "0", "F": "0", "L": "F", "?": "F"}.get(kind, "")
    if isinstance(value, bool):
        return "T" if value else "F"
    if isinstance(value, datetime.datetime):
        value = (value + datetime.timedelta(microseconds=500000)).replace(microsecond=0)
        return value.isoformat(" ").replace(" 00:00:00", "")
    if isinstance(value, datetime.date):
        return value.isoformat()
    if isinstance(value, (int, float, decimal.Decimal)):
        return number(value)
    if isinstance(value, bytes):
        return value.hex()
    return value.replace("\r", "\\r").replace("\n", "\\n").rstrip(" ")


def rows_of_dbfread(path):
    import dbfread
    mark = open(path, "rb").read(32)[29]
    table = dbfread.DBF(path, encoding=None if mark else "cp850", recfactory=list)
    kinds = [field.type for field in table.fields if field.type != "0"]
    for record in table:
        values = [v for field, v in zip(table.fields, [value for _, value in record]) if field.type != "0"]
        yield [plain(v, k) for v, k in zip(values, kinds)]


def rows_of_dbf(path):
    import dbf
    table = dbf.Table(path).open()
    for record in table:
        if dbf.is_deleted(record):
            continue
        known = (bool, int, float, decimal.Decimal, datetime.date, bytes, str)
        yield [plain(v, "") if isinstance(v, known) else "" for v in record]


for row in globals()["rows_of_" + sys.argv[1]](sys.argv[2]):
    print("|".join(row))
