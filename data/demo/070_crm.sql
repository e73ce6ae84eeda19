-- Demo data: CRM leads (numbered from 101, apart from the parties), profiling,
-- notes and activities. Lead 101 looks like contact 30, for the duplicate search.

INSERT INTO CRMAnagrafiche (IdAnagrafica, RagioneSociale, Indirizzo, Cap, Citta, Provincia, CodNazione, Telefono, DataInserimento) VALUES (101, 'Fontana Costruzioni S.r.l.', 'Via Napoleona 50', '22100', 'Como', 'CO', 'IT', '031 507788', '2025-01-10');
INSERT INTO CRMAnagrafiche (IdAnagrafica, RagioneSociale, Indirizzo, Cap, Citta, Provincia, CodNazione, Telefono, DataInserimento) VALUES (102, 'Pellegrini Arredamenti', 'Viale Milano 77', '36100', 'Vicenza', 'VI', 'IT', '0444 320188', '2025-01-10');
INSERT INTO CRMAnagrafiche (IdAnagrafica, RagioneSociale, Indirizzo, Cap, Citta, Provincia, CodNazione, Telefono, DataInserimento) VALUES (103, 'Mancini Software S.r.l.', 'Via Ostiense 131', '00154', 'Roma', 'RM', 'IT', '06 57289011', '2025-01-10');
INSERT INTO CRMAnagraficheAltriDati (IdAnagrafica, Settore, Fonte, NumeroDipendenti, ReferenteCognome, ReferenteNome) VALUES (101, 'Edilizia', 'Fiera Made Expo', 35, 'Fontana', 'Luigi');
INSERT INTO CRMAnagraficheAltriDati (IdAnagrafica, Settore, Fonte, NumeroDipendenti) VALUES (102, 'Arredamento', 'Sito web', 8);
INSERT INTO CRMProfilazioni (codProfilazione, Descrizione, codFamiglia, codTipologia) VALUES ('SETT', 'Settore di attività', 'GEN', 'SEL');
INSERT INTO CRMProfilazioni (codProfilazione, Descrizione, codFamiglia, codTipologia) VALUES ('DIM', 'Dimensione azienda', 'GEN', 'SEL');
INSERT INTO CRMProfilazioni (codProfilazione, Descrizione, codFamiglia, codTipologia) VALUES ('INT', 'Interesse prodotti', 'COM', 'SEL');
INSERT INTO CRMAnagraficheProfilazione (IdAnagrafica, Leads, codProfilazione, codFamiglia, codTipologia, Valutazione, DataProfilazione) VALUES (30, 0, 'SETT', 'GEN', 'SEL', 'Edilizia', '2025-02-12');
INSERT INTO CRMAnagraficheProfilazione (IdAnagrafica, Leads, codProfilazione, codFamiglia, codTipologia, Valutazione, DataProfilazione) VALUES (101, 1, 'SETT', 'GEN', 'SEL', 'Edilizia', '2025-01-10');
INSERT INTO CRMAnagraficheProfilazione (IdAnagrafica, Leads, codProfilazione, codFamiglia, codTipologia, Valutazione, DataProfilazione) VALUES (101, 1, 'DIM', 'GEN', 'SEL', 'Media', '2025-01-10');
INSERT INTO CRMAnagraficheProfilazione (IdAnagrafica, Leads, codProfilazione, codFamiglia, codTipologia, Valutazione, DataProfilazione) VALUES (34, 0, 'INT', 'COM', 'SEL', 'Serramenti', '2024-09-10');
INSERT INTO CRMAnagraficheProfilazione (IdAnagrafica, Leads, codProfilazione, codFamiglia, codTipologia, Valutazione, DataProfilazione) VALUES (2, 0, 'SETT', 'GEN', 'SEL', 'Edilizia', '2024-02-01');
INSERT INTO CRMValProfilazioneRighe (idAnagrafica, Leads, codProfilazione, codFamiglia, codTipologia, CodValProfilazione, Valutazione) VALUES (2, 0, 'SETT', 'GEN', 'SEL', 'EDI', 'Edilizia');
INSERT INTO CRMValProfilazioneRighe (idAnagrafica, Leads, codProfilazione, codFamiglia, codTipologia, CodValProfilazione, Valutazione) VALUES (2, 0, 'DIM', 'GEN', 'SEL', 'GRA', 'Grande');
INSERT INTO CRMAnagraficaClienti (IdAnagrafica, Note) VALUES (30, 'Interessati a fornitura annuale di ferramenta per cantieri.');
INSERT INTO CRMAnagraficaClienti (IdAnagrafica, Note) VALUES (101, 'Conosciuti in fiera; chiedono listino installatori.');
INSERT INTO CRMCalendarioEtichette (labelid, Descrizione, Colore) VALUES (1, 'Telefonata', 255);
INSERT INTO CRMCalendarioEtichette (labelid, Descrizione, Colore) VALUES (2, 'Visita', 65280);
INSERT INTO CRMCalendarioEtichette (labelid, Descrizione, Colore) VALUES (3, 'Invio offerta', 16711680);
INSERT INTO CRMCalendarioEtichette (labelid, Descrizione, Colore) VALUES (4, 'Fiera', 8421504);
INSERT INTO CRMCalendarEvents (EventID, IdAnagrafica, Leads, Subject, Body, StartDateTime, EndDateTime, IsCalendarEvent, codOperatore, labelid, AttivitaSvolta) VALUES (1, 30, 0, 'Richiamare per offerta ferramenta', 'Chiedere quantità annue stimate.', '2025-04-01 10:00', '2025-04-01 10:30', 1, 'MROSSI', 1, 0);
INSERT INTO CRMCalendarEvents (EventID, IdAnagrafica, Leads, Subject, Body, StartDateTime, EndDateTime, IsCalendarEvent, codOperatore, labelid, AttivitaSvolta) VALUES (2, 101, 1, 'Visita in sede Fontana Costruzioni', NULL, '2025-04-08 15:00', '2025-04-08 16:30', 1, 'PMARINO', 2, 0);
INSERT INTO CRMCalendarEvents (EventID, IdAnagrafica, Leads, Subject, Body, StartDateTime, EndDateTime, IsCalendarEvent, codOperatore, labelid, AttivitaSvolta) VALUES (3, 2, 0, 'Inviare offerta travi IPE', NULL, '2025-03-25 09:00', '2025-03-25 09:30', 0, 'MROSSI', 3, 0);
INSERT INTO CRMCalendarEventsSTO (EventID, IdAnagrafica, Leads, Subject, Body, StartDateTime, EndDateTime, IsCalendarEvent, codOperatore, labelid, AttivitaSvolta) VALUES (1001, 30, 0, 'Primo contatto in fiera', 'Stand padiglione 4.', '2025-02-12 11:00', '2025-02-12 11:30', 1, 'PMARINO', 4, 1);
INSERT INTO CRMCalendarEventsSTO (EventID, IdAnagrafica, Leads, Subject, Body, StartDateTime, EndDateTime, IsCalendarEvent, codOperatore, labelid, AttivitaSvolta) VALUES (1002, 2, 0, 'Telefonata per sollecito consegna', NULL, '2025-01-28 14:00', '2025-01-28 14:15', 1, 'MROSSI', 1, 1);
