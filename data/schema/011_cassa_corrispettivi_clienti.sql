-- The cash-register mark on the customer row as well: a cash register is a
-- final-consumer customer, and its card writes CassaCorrispettivi on both of
-- its records, the common party row and the customer row. Queries over a join
-- of the two tables name the column with its table (A.CassaCorrispettivi).
ALTER TABLE STDAnagraficaClienti ADD CassaCorrispettivi bit NULL
GO
