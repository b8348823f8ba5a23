-- Sample data of a made-up shop, for the sqlite3 shell: sqlite3 shop.db < shop.sql
-- The declared type of a column decides its type in a session; dates are ISO texts.

CREATE TABLE Customers (
    CustomerID LONG PRIMARY KEY,
    Name       VARCHAR(60) NOT NULL,
    City       VARCHAR(40),
    Born       DATETIME,
    Newsletter BOOLEAN,
    Discount   SINGLE,
    Badge      GUID,
    Notes      MEMO,
    Photo      LONGBINARY
);

INSERT INTO Customers VALUES
    (1, 'Ada O''Brien', 'Cork', '1971-03-09', 1, 0.05, '{6F9619FF-8B86-D011-B42D-00C04FC964FF}',
     'Likes "quoted" words, and commas', x'FFD8FFE000104A46'),
    (2, 'Łukasz Żółty', 'Łódź', '1985-12-31', 0, 0.0, NULL, 'Zażółć gęślą jaźń', NULL),
    (3, 'Σωκράτης', 'Αθήνα', NULL, NULL, NULL, '{00000000-0000-0000-0000-000000000001}', NULL, x'00'),
    (4, '山田 太郎', '東京', '2000-02-29', 1, 0.125, NULL, '', x''),
    (5, 'Back\slash & Co.', NULL, '1899-12-31', 0, 1.0, NULL, 'first line' || char(13, 10) || 'second line', NULL);

CREATE TABLE Products (
    Code   VARCHAR(12) PRIMARY KEY,
    Title  VARCHAR(80) NOT NULL,
    Stock  SMALLINT,
    Rating BYTE,
    Weight DOUBLE,
    Price  CURRENCY,
    Volume DECIMAL(12,5)
);

INSERT INTO Products VALUES
    ('007', 'Screw "M4" 40 mm', 32767, 5, 0.0031, 0.0499, 0.00012),
    ('A-1', 'Rope, 50''', -3, 0, 1e-9, 12.5, 1234567.12345),
    ('ŻÓŁW', 'Turtle', NULL, NULL, NULL, NULL, NULL);

CREATE TABLE Orders (
    OrderID    LONG PRIMARY KEY,
    CustomerID LONG NOT NULL,
    Ordered    DATETIME NOT NULL,
    Shipped    DATETIME,
    Paid       YESNO,
    Total      CURRENCY,
    Remark     VARCHAR(100)
);

-- 1,000 orders: enough for several batches.
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000)
INSERT INTO Orders
SELECT i, 1 + i % 5,
       datetime('2026-01-01 08:00:00', '+' || (i * 37) || ' minutes'),
       CASE WHEN i % 7 = 0 THEN NULL ELSE date('2026-01-02', '+' || (i / 40) || ' days') END,
       i % 3 = 0,
       (i * 1999 % 100000) / 100.0,
       CASE i % 4 WHEN 0 THEN NULL WHEN 1 THEN '' WHEN 2 THEN 'It''s order ' || i ELSE 'заказ ' || i END
FROM n;

-- Filled from the files of a polled folder.
CREATE TABLE Receipts (
    Receipt  LONG PRIMARY KEY,
    Sold     DATETIME,
    Customer VARCHAR(60),
    Amount   CURRENCY,
    Remark   VARCHAR(100)
);
