-- Demo data: parties and CRM leads that duplicate others, for the duplicate
-- search and the merge of the contact and customer cards. Parties 90-94, 96
-- and 97 and leads 190-193 keep apart from the numbers of the other demo files.
--   90 contact  'Edilizia Fontana Nuova S.r.l.'  same VAT number as contact 30
--   91 contact  'ROSSI IMPIANTI SRL'             customer 1 written otherwise
--   92 contact  'Mario Bianchi'                  same fiscal code as customer 3
--   93 contact  'D''Amico Serramenti'            customer 96 with the apostrophe
--   94 contact  'Ristorante Miramare'            shares one word with customer 7 (similar)
--   96 customer 'D''Amico Serramenti S.a.s.'
--   97 supplier 'Miramare Forniture Alberghiere' shares the same word, but is a supplier
-- Leads: 190 customer 1 again, 191 customer 2 with its VAT number, 192
-- contact 33, 193 contact 32; lead 190 carries profiling, notes and an
-- activity to merge.

INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, CodiceFiscale, PartitaIva, Indirizzo, Cap, Citta, Provincia, CodNazione, CodDivisa, CodLingua, Telefono, Cliente, Fornitore, Contatto, Agente, Vettore, CassaCorrispettivi, DataInserimento) VALUES (90, 'Edilizia Fontana Nuova S.r.l.', '03815600139', '03815600139', 'Via Napoleone 50', '22100', 'Como', 'CO', 'IT', 'EUR', 'ITA', '031 507788', 0, 0, 1, 0, 0, 0, '2025-03-18');
INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Indirizzo, Cap, Citta, Provincia, CodNazione, CodDivisa, CodLingua, E_mail, Cliente, Fornitore, Contatto, Agente, Vettore, CassaCorrispettivi, DataInserimento) VALUES (91, 'ROSSI IMPIANTI SRL', 'Via G. Pascoli 27', '20121', 'Milano', 'MI', 'IT', 'EUR', 'ITA', 'ufficiotecnico@rossiimpianti.it', 0, 0, 1, 0, 0, 0, '2025-03-20');
INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, CodiceFiscale, Indirizzo, Cap, Citta, Provincia, CodNazione, CodDivisa, CodLingua, Portatile, Sesso, Cliente, Fornitore, Contatto, Agente, Vettore, CassaCorrispettivi, DataInserimento) VALUES (92, 'Mario Bianchi', 'BNCMRA68C14B157V', 'C.so Garibaldi 41', '25121', 'Brescia', 'BS', 'IT', 'EUR', 'ITA', '335 7412098', 'M', 0, 0, 1, 0, 0, 0, '2025-04-02');
INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Indirizzo, Cap, Citta, Provincia, CodNazione, CodDivisa, CodLingua, Telefono, Cliente, Fornitore, Contatto, Agente, Vettore, CassaCorrispettivi, DataInserimento) VALUES (93, 'D''Amico Serramenti', 'Via Arenaccia 12', '80141', 'Napoli', 'NA', 'IT', 'EUR', 'ITA', '081 7801422', 0, 0, 1, 0, 0, 0, '2025-04-10');
INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Indirizzo, Cap, Citta, Provincia, CodNazione, CodDivisa, CodLingua, Telefono, Cliente, Fornitore, Contatto, Agente, Vettore, CassaCorrispettivi, DataInserimento) VALUES (94, 'Ristorante Miramare', 'Lungomare Tintori 6', '47921', 'Rimini', 'RN', 'IT', 'EUR', 'ITA', '0541 28174', 0, 0, 1, 0, 0, 0, '2025-04-15');
INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, CodiceFiscale, PartitaIva, Indirizzo, Cap, Citta, Provincia, CodNazione, CodDivisa, CodLingua, Telefono, Cliente, Fornitore, Contatto, Agente, Vettore, CassaCorrispettivi, DataInserimento) VALUES (96, 'D''Amico Serramenti S.a.s.', '07518430637', '07518430637', 'Via Arenaccia 12', '80141', 'Napoli', 'NA', 'IT', 'EUR', 'ITA', '081 7801422', 1, 0, 0, 0, 0, 0, '2024-06-03');
INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, CodiceFiscale, PartitaIva, Indirizzo, Cap, Citta, Provincia, CodNazione, CodDivisa, CodLingua, Telefono, Cliente, Fornitore, Contatto, Agente, Vettore, CassaCorrispettivi, DataInserimento) VALUES (97, 'Miramare Forniture Alberghiere S.r.l.', '04188270997', '04188270997', 'Via Flaminia 120', '47923', 'Rimini', 'RN', 'IT', 'EUR', 'ITA', '0541 390112', 0, 1, 0, 0, 0, 0, '2024-06-03');

INSERT INTO STDAnagraficaContatti (IdAnagrafica, InvioMail, CodCatContatto, CodArea, DataContatto) VALUES (90, 1, 'FIE', 'NO', '2025-03-18');
INSERT INTO STDAnagraficaContatti (IdAnagrafica, InvioMail, CodCatContatto, CodArea, DataContatto, Contatto) VALUES (91, 1, 'WEB', 'NO', '2025-03-20', 'Ufficio tecnico');
INSERT INTO STDAnagraficaContatti (IdAnagrafica, InvioMail, CodCatContatto, CodArea, DataContatto) VALUES (92, 0, 'SEG', 'NO', '2025-04-02');
INSERT INTO STDAnagraficaContatti (IdAnagrafica, InvioMail, CodCatContatto, CodArea, DataContatto) VALUES (93, 1, 'WEB', 'SU', '2025-04-10');
INSERT INTO STDAnagraficaContatti (IdAnagrafica, InvioMail, CodCatContatto, CodArea, DataContatto, DataRichiamo) VALUES (94, 1, 'FIE', 'CE', '2025-04-15', '2025-05-06');
INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoConto, TipoCliFor, MovCont, SezioneBilancio, CodContoPadre) VALUES ('14.01.00096', 'D''Amico Serramenti S.a.s.', 3, 1, 1, 1, '14.01');
INSERT INTO STDAnagraficaClienti (IdAnagrafica, CodConto, SezionaleIva, InvioMail, PosizioneNote, TipoDocumentoDaGenerare, CodCatCliente, CodArea, CodPagamento) VALUES (96, '14.01.00096', 'A', 1, 0, 2, 'IMP', 'SU', 'RB30');
INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoConto, TipoCliFor, MovCont, SezioneBilancio, CodContoPadre) VALUES ('40.01.00097', 'Miramare Forniture Alberghiere S.r.l.', 3, 2, 1, 2, '40.01');
INSERT INTO STDAnagraficaFornitori (IdAnagrafica, CodConto, SezionaleIva, PersonaFisica, CodCatFornitore, CodPagamento) VALUES (97, '40.01.00097', 'A', 0, 'SER', 'BB60');

INSERT INTO CRMAnagrafiche (IdAnagrafica, RagioneSociale, Indirizzo, Cap, Citta, Provincia, CodNazione, Telefono, DataInserimento) VALUES (190, 'Rossi Impianti', 'Via Pascoli 27', '20121', 'Milano', 'MI', 'IT', '02 66984120', '2025-02-20');
INSERT INTO CRMAnagrafiche (IdAnagrafica, RagioneSociale, Indirizzo, Cap, Citta, Provincia, CodNazione, PartitaIva, DataInserimento) VALUES (191, 'Edilnord S.p.A.', 'Via Borgo Palazzo 118', '24121', 'Bergamo', 'BG', 'IT', '02981450162', '2025-02-20');
INSERT INTO CRMAnagrafiche (IdAnagrafica, RagioneSociale, Indirizzo, Cap, Citta, Provincia, CodNazione, E_mail, DataInserimento) VALUES (192, 'Serra Design', 'Viale Trieste 133', '09124', 'Cagliari', 'CA', 'IT', 'progetti@serradesign.it', '2025-03-05');
INSERT INTO CRMAnagrafiche (IdAnagrafica, RagioneSociale, Indirizzo, Cap, Citta, Provincia, CodNazione, DataInserimento) VALUES (193, 'Moretti Officina Meccanica', 'Via Sestriere 22', '10121', 'Torino', 'TO', 'IT', '2025-03-05');
INSERT INTO CRMAnagraficheProfilazione (IdAnagrafica, Leads, codProfilazione, codFamiglia, codTipologia, Valutazione, DataProfilazione) VALUES (190, 1, 'SETT', 'GEN', 'SEL', 'Impiantistica', '2025-02-20');
INSERT INTO CRMAnagraficheProfilazione (IdAnagrafica, Leads, codProfilazione, codFamiglia, codTipologia, Valutazione, DataProfilazione) VALUES (190, 1, 'INT', 'COM', 'SEL', 'Fotovoltaico', '2025-02-20');
INSERT INTO CRMAnagraficheProfilazione (IdAnagrafica, Leads, codProfilazione, codFamiglia, codTipologia, Valutazione, DataProfilazione) VALUES (91, 0, 'SETT', 'GEN', 'SEL', 'Impiantistica', '2025-03-20');
INSERT INTO CRMAnagraficaClienti (IdAnagrafica, Note) VALUES (190, 'Chiedono un preventivo per il fotovoltaico del capannone.');
INSERT INTO CRMAnagraficaClienti (IdAnagrafica, Note) VALUES (91, 'Contatto arrivato dal sito: forse già cliente come Rossi Impianti.');
INSERT INTO CRMCalendarEvents (EventID, IdAnagrafica, Leads, Subject, Body, StartDateTime, EndDateTime, IsCalendarEvent, codOperatore, labelid, AttivitaSvolta) VALUES (901, 190, 1, 'Telefonata di presentazione', 'Richiamare l''ufficio tecnico.', '2025-04-22 10:00', '2025-04-22 10:15', 1, 'MROSSI', 1, 0);
INSERT INTO CRMCalendarEventsSTO (EventID, IdAnagrafica, Leads, Subject, Body, StartDateTime, EndDateTime, IsCalendarEvent, codOperatore, labelid, AttivitaSvolta) VALUES (1901, 190, 1, 'Incontro in fiera', NULL, '2025-02-20 15:00', '2025-02-20 15:30', 1, 'PMARINO', 4, 1);
