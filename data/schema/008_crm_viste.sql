-- All activities of a party or lead, current (Storico 0) and stored (Storico 1).
CREATE VIEW CRMViewAttivitaTotali AS
SELECT EventID, IdAnagrafica, Leads, Subject, Body, StartDateTime, EndDateTime,
       IsCalendarEvent, 0 AS Storico, codOperatore, labelid, AttivitaSvolta
FROM CRMCalendarEvents
UNION ALL
SELECT EventID, IdAnagrafica, Leads, Subject, Body, StartDateTime, EndDateTime,
       IsCalendarEvent, 1 AS Storico, codOperatore, labelid, AttivitaSvolta
FROM CRMCalendarEventsSTO
GO
