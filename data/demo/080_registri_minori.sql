-- Demo data: more of the minor registers. Manufacturers 5-8 (8 a foreign
-- maker) and loaders 4-6 join those of 030_anagrafiche.sql (loader 1 is the
-- one named on the tail of sales document 2; these are named on none); cash
-- registers 40 and 41 join register 11; activity code 2 joins code 1. The 2024 settlements hold the December settlement, the advance
-- (period 13) and the annual settlement (period 14); the 2025 intra-EU sales
-- of activity 1 make its 2025 export ceiling of 175000, of which the 2025
-- purchase under declaration of intent (registration 2) uses 25000.

INSERT INTO STDAnagraficaCostruttori (IdAnagraficaCostruttore, RagioneSociale, CodiceFiscale, PartitaIva, Indirizzo, Cap, Citta, Provincia, CodNazione, CodLingua, Telefono, Internet, E_mail, CodCatCostruttore) VALUES (5, 'Utensilerie Lombarde S.p.A.', '04812370155', '04812370155', 'Via Industriale 12', '23900', 'Lecco', 'LC', 'IT', 'ITA', '0341 283310', 'www.utensilerielombarde.it', 'commerciale@utensilerielombarde.it', 'UTE');
INSERT INTO STDAnagraficaCostruttori (IdAnagraficaCostruttore, RagioneSociale, CodiceFiscale, PartitaIva, Indirizzo, Cap, Citta, Provincia, CodNazione, CodLingua, Telefono, E_mail, CodCatCostruttore) VALUES (6, 'Meccanica Bergamasca S.r.l.', '03269140160', '03269140160', 'Via Zanica 41', '24126', 'Bergamo', 'BG', 'IT', 'ITA', '035 320187', 'info@meccanicabergamasca.it', 'MEC');
INSERT INTO STDAnagraficaCostruttori (IdAnagraficaCostruttore, RagioneSociale, RagioneSociale2, CodiceFiscale, PartitaIva, Indirizzo, Cap, Citta, Provincia, CodNazione, CodLingua, Telefono, CodCatCostruttore, Note) VALUES (7, 'Idrotermica Bresciana S.r.l.', 'Valvole e raccorderia', '02776410173', '02776410173', 'Via Triumplina 180', '25136', 'Brescia', 'BS', 'IT', 'ITA', '030 2007715', 'IDR', 'Listino aggiornato ogni gennaio.');
INSERT INTO STDAnagraficaCostruttori (IdAnagraficaCostruttore, RagioneSociale, CodiceFiscale, PartitaIva, Indirizzo, Cap, Citta, CodNazione, CodLingua, Telefono, CodCatCostruttore) VALUES (8, 'Werkzeugfabrik Kessler GmbH', NULL, 'DE811907980', 'Industriestrasse 8', '70565', 'Stuttgart', 'DE', 'DEU', '+49 711 7820410', 'UTE');

INSERT INTO STDAnagraficaCaricatori (IdAnagrafica, RagioneSociale, CodiceFiscale, PartitaIva, Indirizzo, Cap, Citta, Provincia, CodNazione, CodLingua, Telefono, E_mail) VALUES (4, 'Logistica Brianza S.r.l.', '10538820159', '10538820159', 'Via della Logistica 5', '20862', 'Arcore', 'MB', 'IT', 'ITA', '039 6013377', 'magazzino@logisticabrianza.it');
INSERT INTO STDAnagraficaCaricatori (IdAnagrafica, RagioneSociale, RagioneSociale2, CodiceFiscale, PartitaIva, Indirizzo, Cap, Citta, Provincia, CodNazione, CodLingua, Telefono) VALUES (5, 'Magazzini Generali Bergamo S.p.A.', 'Deposito di Stezzano', '09177450989', '09177450989', 'Via Guzzanica 30', '24040', 'Stezzano', 'BG', 'IT', 'ITA', '035 4541120');
INSERT INTO STDAnagraficaCaricatori (IdAnagrafica, RagioneSociale, CodiceFiscale, PartitaIva, Indirizzo, Cap, Citta, Provincia, CodNazione, CodLingua, Telefono, FineValidita) VALUES (6, 'Interporto Verona Servizi S.r.l.', '06155290973', '06155290973', 'Via Sommacampagna 22', '37137', 'Verona', 'VR', 'IT', 'ITA', '045 8622015', '2026-12-31');

INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoConto, TipoCliFor, MovCont, SezioneBilancio, CodContoPadre) VALUES ('14.01.00040', 'Cassa negozio Monza', 3, 1, 1, 1, '14.01');
INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoConto, TipoCliFor, MovCont, SezioneBilancio, CodContoPadre) VALUES ('14.01.00041', 'Cassa punto vendita Lecco', 3, 1, 1, 1, '14.01');
INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, RagioneSociale2, Indirizzo, Cap, Citta, Provincia, CodNazione, CodDivisa, CodLingua, Cliente, Fornitore, Contatto, Agente, Vettore, CassaCorrispettivi, DataInserimento) VALUES (40, 'Cassa negozio Monza', 'Registratore telematico 1', 'Via Italia 22', '20900', 'Monza', 'MB', 'IT', 'EUR', 'ITA', 1, 0, 0, 0, 0, 1, '2024-03-01');
INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Indirizzo, Cap, Citta, Provincia, CodNazione, CodDivisa, CodLingua, Cliente, Fornitore, Contatto, Agente, Vettore, CassaCorrispettivi, DataInserimento) VALUES (41, 'Cassa punto vendita Lecco', 'Corso Martiri della Liberazione 9', '23900', 'Lecco', 'LC', 'IT', 'EUR', 'ITA', 1, 0, 0, 0, 0, 1, '2024-09-15');
INSERT INTO STDAnagraficaClienti (IdAnagrafica, CodConto, ConsumatoreFinale, EscludiDaElenco, CodContropartita, CodPagamento, InvioMail, PosizioneNote, TipoDocumentoDaGenerare) VALUES (40, '14.01.00040', 1, 1, '70.01.00003', 'CO', 0, 0, 0);
INSERT INTO STDAnagraficaClienti (IdAnagrafica, CodConto, ConsumatoreFinale, EscludiDaElenco, CodContropartita, CodPagamento, InvioMail, PosizioneNote, TipoDocumentoDaGenerare, FineValidita) VALUES (41, '14.01.00041', 1, 1, '70.01.00003', 'CO', 0, 0, 0, '2026-06-30');

INSERT INTO COGParametriIvaAttivita (CodAttivita, Descrizione, CodiceAteco) VALUES ('2', 'Locazione di immobili propri', '68.20.01');
INSERT INTO COGParametriIvaAttivitaRighe (CodAttivita, Anno, PercProRata, PlafondResiduo1, PlafondResiduo2) VALUES ('2', 2024, 62.5, NULL, NULL);
INSERT INTO COGParametriIvaAttivitaRighe (CodAttivita, Anno) VALUES ('2', 2025);

INSERT INTO COGIvaLiquidazioni (Anno, Periodo, DataLiquidazione, ValoriDefinitivi, IvaDebito, IvaCredito, CreditoPrecedente, Versamento) VALUES (2024, 12, '2025-01-16', 1, 3400.0, 2100.0, 0.0, 1300.0);
INSERT INTO COGIvaLiquidazioniAttivita (Anno, Periodo, CodAttivita, PercProrata, IvaDebito, IvaCredito) VALUES (2024, 12, '1', 100.0, 3100.0, 1900.0);
INSERT INTO COGIvaLiquidazioniAttivita (Anno, Periodo, CodAttivita, PercProrata, IvaDebito, IvaCredito) VALUES (2024, 12, '2', 64.0, 300.0, 200.0);
INSERT INTO COGIvaLiquidazioni (Anno, Periodo, DataLiquidazione, ValoriDefinitivi, IvaDebito, IvaCredito, CreditoPrecedente, Versamento) VALUES (2024, 13, '2024-12-27', 1, 2900.0, 1800.0, 0.0, 1100.0);
INSERT INTO COGIvaLiquidazioniAttivita (Anno, Periodo, CodAttivita, PercProrata, IvaDebito, IvaCredito) VALUES (2024, 13, '1', 100.0, 2700.0, 1650.0);
INSERT INTO COGIvaLiquidazioniAttivita (Anno, Periodo, CodAttivita, PercProrata, IvaDebito, IvaCredito) VALUES (2024, 13, '2', 60.0, 200.0, 150.0);
INSERT INTO COGIvaLiquidazioni (Anno, Periodo, DataLiquidazione, ValoriDefinitivi, IvaDebito, IvaCredito, CreditoPrecedente, Versamento) VALUES (2024, 14, '2025-04-30', 1, 1500.0, 1320.0, 0.0, 180.0);
INSERT INTO COGIvaLiquidazioniAttivita (Anno, Periodo, CodAttivita, PercProrata, IvaDebito, IvaCredito) VALUES (2024, 14, '1', 100.0, 1200.0, 1100.0);
INSERT INTO COGIvaLiquidazioniAttivita (Anno, Periodo, CodAttivita, PercProrata, IvaDebito, IvaCredito) VALUES (2024, 14, '2', 62.5, 300.0, 220.0);

INSERT INTO COGPrimeNoteTeste (IdPrimaNota, IdDoc, DataRegistrazione, CodCausale, Descrizione, IdAnagrafica, TipoCliFor, TipoRegIva, SezionaleIva, NrProtocollo, CodAttivita, TipoDocumento, DataDocumento, NumeroDocumento, Provvisoria, CodDivisa, TotDocumentoVB, TotImponibileVB, TotImpostaVB) VALUES (101, NULL, '2025-04-15', 'FV', 'Fattura n. 48/A (cessione intracomunitaria)', 9, 1, 2, 'A', 48, '1', 'F', '2025-04-15', '48', 0, 'EUR', 60000.0, 60000.0, 0.0);
INSERT INTO COGPrimeNoteTeste (IdPrimaNota, IdDoc, DataRegistrazione, CodCausale, Descrizione, IdAnagrafica, TipoCliFor, TipoRegIva, SezionaleIva, NrProtocollo, CodAttivita, TipoDocumento, DataDocumento, NumeroDocumento, Provvisoria, CodDivisa, TotDocumentoVB, TotImponibileVB, TotImpostaVB) VALUES (102, NULL, '2025-09-20', 'FV', 'Fattura n. 131/A (cessione intracomunitaria)', 10, 1, 2, 'A', 131, '1', 'F', '2025-09-20', '131', 0, 'EUR', 120000.0, 120000.0, 0.0);
INSERT INTO COGPrimeNoteTeste (IdPrimaNota, IdDoc, DataRegistrazione, CodCausale, Descrizione, IdAnagrafica, TipoCliFor, TipoRegIva, SezionaleIva, NrProtocollo, CodAttivita, TipoDocumento, DataDocumento, NumeroDocumento, DataFattura, NrFattura, Provvisoria, CodDivisa, TotDocumentoVB, TotImponibileVB, TotImpostaVB) VALUES (103, NULL, '2025-10-05', 'NCV', 'Nota di credito n. 9/A', 10, 1, 2, 'A', 139, '1', 'N', '2025-10-05', '9', '2025-09-20', '131', 0, 'EUR', 5000.0, 5000.0, 0.0);
INSERT INTO COGPrimeNoteRCont (IdPrimaNota, IdRiga, CodConto, IdCliFor, TipoCliFor, ImportoDare, ImportoAvere) VALUES (101, 1, '14.01.00009', 9, 1, 60000.0, 0.0);
INSERT INTO COGPrimeNoteRCont (IdPrimaNota, IdRiga, CodConto, IdCliFor, TipoCliFor, ImportoDare, ImportoAvere) VALUES (101, 2, '70.01.00001', NULL, 0, 0.0, 60000.0);
INSERT INTO COGPrimeNoteRCont (IdPrimaNota, IdRiga, CodConto, IdCliFor, TipoCliFor, ImportoDare, ImportoAvere) VALUES (102, 1, '14.01.00010', 10, 1, 120000.0, 0.0);
INSERT INTO COGPrimeNoteRCont (IdPrimaNota, IdRiga, CodConto, IdCliFor, TipoCliFor, ImportoDare, ImportoAvere) VALUES (102, 2, '70.01.00001', NULL, 0, 0.0, 120000.0);
INSERT INTO COGPrimeNoteRCont (IdPrimaNota, IdRiga, CodConto, IdCliFor, TipoCliFor, ImportoDare, ImportoAvere) VALUES (103, 1, '14.01.00010', 10, 1, 0.0, 5000.0);
INSERT INTO COGPrimeNoteRCont (IdPrimaNota, IdRiga, CodConto, IdCliFor, TipoCliFor, ImportoDare, ImportoAvere) VALUES (103, 2, '70.01.00001', NULL, 0, 5000.0, 0.0);
INSERT INTO COGPrimeNoteRIva (IdPrimaNota, IdRiga, CodIva, TipoRegIva, SegnoIva, ImponibileVB, ImpostaVB) VALUES (101, 1, 'NI41', 2, 1, 60000.0, 0.0);
INSERT INTO COGPrimeNoteRIva (IdPrimaNota, IdRiga, CodIva, TipoRegIva, SegnoIva, ImponibileVB, ImpostaVB) VALUES (102, 1, 'NI41', 2, 1, 120000.0, 0.0);
INSERT INTO COGPrimeNoteRIva (IdPrimaNota, IdRiga, CodIva, TipoRegIva, SegnoIva, ImponibileVB, ImpostaVB) VALUES (103, 1, 'NI41', 2, -1, 5000.0, 0.0);
