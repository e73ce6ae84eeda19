-- Demo data: addresses, banks, reference persons, notes, history snapshots,
-- declarations of intent and agents' mandates. Row keys are given explicitly so
-- that the parties' default bank and address columns can name them.


-- Other addresses (TipoIndirizzo 0 invoice, 1 goods, 2 Ri.Ba.).
INSERT INTO STDAnagIndirizzi (IdIndirizzo, IdAnagrafica, NrIndirizzo, TipoIndirizzo, RagioneSociale, RagioneSociale2, Indirizzo, Cap, Citta, Provincia, CodNazione, IdAgente1, [Default]) VALUES (1, 1, 1, 1, 'Rossi Impianti S.r.l.', 'Cantiere Via Ripamonti', 'Via Giuseppe Ripamonti 188', '20141', 'Milano', 'MI', 'IT', 24, 1);
INSERT INTO STDAnagIndirizzi (IdIndirizzo, IdAnagrafica, NrIndirizzo, TipoIndirizzo, RagioneSociale, RagioneSociale2, Indirizzo, Cap, Citta, Provincia, CodNazione, IdAgente1, [Default]) VALUES (2, 1, 2, 0, 'Rossi Impianti S.r.l.', 'Amministrazione', 'Via Giovanni Pascoli 27', '20121', 'Milano', 'MI', 'IT', 24, 1);
INSERT INTO STDAnagIndirizzi (IdIndirizzo, IdAnagrafica, NrIndirizzo, TipoIndirizzo, RagioneSociale, RagioneSociale2, Indirizzo, Cap, Citta, Provincia, CodNazione, IdAgente1, [Default]) VALUES (3, 2, 1, 1, 'Edilnord S.p.A.', 'Magazzino centrale', 'Via Cassinone 4', '24068', 'Seriate', 'BG', 'IT', 23, 1);
INSERT INTO STDAnagIndirizzi (IdIndirizzo, IdAnagrafica, NrIndirizzo, TipoIndirizzo, RagioneSociale, RagioneSociale2, Indirizzo, Cap, Citta, Provincia, CodNazione, IdAgente1, [Default]) VALUES (4, 2, 2, 1, 'Edilnord S.p.A.', 'Cantiere ospedale', 'Piazzale Ospedale 1', '24047', 'Treviglio', 'BG', 'IT', 23, 0);
INSERT INTO STDAnagIndirizzi (IdIndirizzo, IdAnagrafica, NrIndirizzo, TipoIndirizzo, RagioneSociale, RagioneSociale2, Indirizzo, Cap, Citta, Provincia, CodNazione, IdAgente1, [Default]) VALUES (5, 2, 3, 2, 'Edilnord S.p.A.', 'Domiciliazione effetti', 'Via Borgo Palazzo 118', '24121', 'Bergamo', 'BG', 'IT', 23, 1);
INSERT INTO STDAnagIndirizzi (IdIndirizzo, IdAnagrafica, NrIndirizzo, TipoIndirizzo, RagioneSociale, RagioneSociale2, Indirizzo, Cap, Citta, Provincia, CodNazione, IdAgente1, [Default]) VALUES (6, 13, 1, 1, 'Distribuzione Adriatica S.p.A.', 'Deposito Modugno', 'Via dei Gladioli 12', '70026', 'Modugno', 'BA', 'IT', 25, 1);
INSERT INTO STDAnagIndirizzi (IdIndirizzo, IdAnagrafica, NrIndirizzo, TipoIndirizzo, RagioneSociale, RagioneSociale2, Indirizzo, Cap, Citta, Provincia, CodNazione, IdAgente1, [Default]) VALUES (7, 5, 1, 1, 'Comune di Lecco', 'Scuola media G. Parini', 'Via Parini 6', '23900', 'Lecco', 'LC', 'IT', NULL, 1);
INSERT INTO STDAnagIndirizzi (IdIndirizzo, IdAnagrafica, NrIndirizzo, TipoIndirizzo, RagioneSociale, RagioneSociale2, Indirizzo, Cap, Citta, Provincia, CodNazione, IdAgente1, [Default]) VALUES (8, 15, 1, 1, 'Acciaierie Venete S.p.A.', 'Stabilimento di Camposampiero', 'Via Corso 40', '35012', 'Camposampiero', 'PD', 'IT', NULL, 1);
INSERT INTO STDAnagIndirizzi (IdIndirizzo, IdAnagrafica, NrIndirizzo, TipoIndirizzo, RagioneSociale, RagioneSociale2, Indirizzo, Cap, Citta, Provincia, CodNazione, IdAgente1, [Default]) VALUES (9, 9, 1, 1, 'Schmidt Werkzeuge GmbH', 'Lager Garching', 'Schleissheimer Strasse 90', '85748', 'Garching', NULL, 'DE', NULL, 1);

-- Banks (IBAN, CIN and check digits computed from ABI, CAB and account).
INSERT INTO STDBancheClienti (IdBanca, IdAnagrafica, Descrizione, Agenzia, Citta, Provincia, CodNazione, CodAbi, CodCab, CodicePaeseIBAN, CheckDigitIBAN, CodiceCIN, NumeroCc, Iban, CircuitoBancario, [Default]) VALUES (1, 2, 'Credito Orobico', 'Filiale di Bergamo centro', 'Bergamo', 'BG', 'IT', '05428', '11101', 'IT', '26', 'B', '000000012874', 'IT26B0542811101000000012874', NULL, 1);
INSERT INTO STDBancheClienti (IdBanca, IdAnagrafica, Descrizione, Agenzia, Citta, Provincia, CodNazione, CodAbi, CodCab, CodicePaeseIBAN, CheckDigitIBAN, CodiceCIN, NumeroCc, Iban, CircuitoBancario, [Default]) VALUES (2, 2, 'Banca Agricola Bergamasca', 'Ag. Seriate', 'Seriate', 'BG', 'IT', '08940', '53340', 'IT', '50', 'Q', 'CC0010045321', 'IT50Q0894053340CC0010045321', NULL, 0);
INSERT INTO STDBancheClienti (IdBanca, IdAnagrafica, Descrizione, Agenzia, Citta, Provincia, CodNazione, CodAbi, CodCab, CodicePaeseIBAN, CheckDigitIBAN, CodiceCIN, NumeroCc, Iban, CircuitoBancario, [Default]) VALUES (3, 1, 'Banca Popolare Ambrosiana', 'Ag. 12 Milano Ripamonti', 'Milano', 'MI', 'IT', '05034', '01633', 'IT', '53', 'B', '000000004411', 'IT53B0503401633000000004411', NULL, 1);
INSERT INTO STDBancheClienti (IdBanca, IdAnagrafica, Descrizione, Agenzia, Citta, Provincia, CodNazione, CodAbi, CodCab, CodicePaeseIBAN, CheckDigitIBAN, CodiceCIN, NumeroCc, Iban, CircuitoBancario, [Default]) VALUES (4, 13, 'Banca del Levante', 'Sede di Bari', 'Bari', 'BA', 'IT', '05424', '04001', 'IT', '33', 'R', '000000771020', 'IT33R0542404001000000771020', NULL, 1);
INSERT INTO STDBancheClienti (IdBanca, IdAnagrafica, Descrizione, Agenzia, Citta, Provincia, CodNazione, CodAbi, CodCab, CodicePaeseIBAN, CheckDigitIBAN, CodiceCIN, NumeroCc, Iban, CircuitoBancario, [Default]) VALUES (5, 3, 'Cassa Rurale Bresciana', 'Ag. Corso Garibaldi', 'Brescia', 'BS', 'IT', '08692', '11200', 'IT', '22', 'R', '000000230145', 'IT22R0869211200000000230145', NULL, 1);
INSERT INTO STDBancheFornitori (IdBanca, IdAnagrafica, Descrizione, Agenzia, Citta, Provincia, CodNazione, CodAbi, CodCab, CodicePaeseIBAN, CheckDigitIBAN, CodiceCIN, NumeroCc, Iban, CircuitoBancario, [Default]) VALUES (1, 15, 'Banca Veneta di Credito', 'Sede di Padova', 'Padova', 'PD', 'IT', '06225', '12186', 'IT', '91', 'G', '100000005123', 'IT91G0622512186100000005123', NULL, 1);
INSERT INTO STDBancheFornitori (IdBanca, IdAnagrafica, Descrizione, Agenzia, Citta, Provincia, CodNazione, CodAbi, CodCab, CodicePaeseIBAN, CheckDigitIBAN, CodiceCIN, NumeroCc, Iban, CircuitoBancario, [Default]) VALUES (2, 16, 'Cassa di Risparmio Fiorentina', 'Ag. Rifredi', 'Firenze', 'FI', 'IT', '06160', '02806', 'IT', '50', 'P', '000000091827', 'IT50P0616002806000000091827', NULL, 1);
INSERT INTO STDBancheFornitori (IdBanca, IdAnagrafica, Descrizione, Agenzia, Citta, Provincia, CodNazione, CodAbi, CodCab, CodicePaeseIBAN, CheckDigitIBAN, CodiceCIN, NumeroCc, Iban, CircuitoBancario, [Default]) VALUES (3, 18, 'Banca Scaligera', 'Ag. Porta Palio', 'Verona', 'VR', 'IT', '05034', '11701', 'IT', '11', 'C', '000000560012', 'IT11C0503411701000000560012', NULL, 1);
INSERT INTO STDBancheFornitori (IdBanca, IdAnagrafica, Descrizione, Agenzia, Citta, Provincia, CodNazione, CodAbi, CodCab, CodicePaeseIBAN, CheckDigitIBAN, CodiceCIN, NumeroCc, Iban, CircuitoBancario, [Default]) VALUES (4, 23, 'Credito Orobico', 'Ag. Via Tiraboschi', 'Bergamo', 'BG', 'IT', '05428', '11102', 'IT', '71', 'O', '000000033417', 'IT71O0542811102000000033417', NULL, 1);

-- Reference persons (IdRiferimento numbered per party).
INSERT INTO STDAnagRiferimenti (IdAnagrafica, IdRiferimento, NrRiga, TipoRiferimento, Cognome, Nome, Telefono1, Telefono2, Cellulare, Mail, InvioOrdCli, InvioDDTEme, TipoInvio) VALUES (2, 1, 1, 'ACQ', 'Sala', 'Roberto', '035 241187', NULL, '335 8120441', 'r.sala@edilnord.it', 1, 1, 3);
INSERT INTO STDAnagRiferimenti (IdAnagrafica, IdRiferimento, NrRiga, TipoRiferimento, Cognome, Nome, Telefono1, Telefono2, Cellulare, Mail, InvioFattEme, InvioNotaCre, InvioSollecito, InvioEstrattoConto, TipoInvio) VALUES (2, 2, 2, 'AMM', 'Pagani', 'Elena', '035 241190', NULL, NULL, 'amministrazione@edilnord.it', 1, 1, 1, 1, 3);
INSERT INTO STDAnagRiferimenti (IdAnagrafica, IdRiferimento, NrRiga, TipoRiferimento, Cognome, Nome, Telefono1, Telefono2, Cellulare, Mail, InvioOfferte, TipoInvio) VALUES (1, 1, 1, 'TIT', 'Rossi', 'Giorgio', '02 66984120', NULL, '338 4410297', 'giorgio@rossiimpianti.it', 1, 3);
INSERT INTO STDAnagRiferimenti (IdAnagrafica, IdRiferimento, NrRiga, TipoRiferimento, Cognome, Nome, Telefono1, Telefono2, Cellulare, Mail, InvioOrdFor, InvioRichOffForn, TipoInvio) VALUES (15, 1, 1, 'COM', 'Zanella', 'Marco', '049 8292140', NULL, '340 9921873', 'm.zanella@acciaierievenete.it', 1, 1, 3);
INSERT INTO STDAnagRiferimenti (IdAnagrafica, IdRiferimento, NrRiga, TipoRiferimento, Cognome, Nome, Telefono1, Telefono2, Cellulare, Mail, InvioOrdLav, TipoInvio) VALUES (17, 1, 1, 'TEC', 'Bassi', 'Chiara', '051 6340220', NULL, NULL, 'ufficiotecnico@plasticheemiliane.it', 1, 2);
INSERT INTO STDAnagRiferimenti (IdAnagrafica, IdRiferimento, NrRiga, TipoRiferimento, Cognome, Nome, Telefono1, Telefono2, Cellulare, Mail, InvioCRM, TipoInvio) VALUES (30, 1, 1, 'TIT', 'Fontana', 'Luigi', '031 507788', NULL, '347 7781023', 'luigi.fontana@edilfontana.it', 1, 3);

-- Notes printed on documents.
INSERT INTO STDAnagraficaClientiNote (IdNota, IdAnagrafica, NrRiga, Nota, DDT) VALUES (1, 2, 1, 'Consegne solo dalle 8 alle 12; avvisare il capocantiere il giorno prima.', 1);
INSERT INTO STDAnagraficaClientiNote (IdNota, IdAnagrafica, NrRiga, Nota, Fattura, OrdiniCliente) VALUES (2, 5, 1, 'Indicare sempre CIG e CUP in fattura.', 1, 1);
INSERT INTO STDAnagraficaFornitoriNote (IdNota, IdAnagrafica, NrRiga, Nota, OrdiniFornitore, DDT) VALUES (1, 17, 1, 'Allegare la distinta del materiale in conto lavoro.', 1, 1);

-- History snapshots: the data as they were before the change.
INSERT INTO STDAnagraficheStorico (IdAnagrafica, IdRiga, TipoCliFor, DataAnagrafica, RagioneSociale, RagioneSociale2, Indirizzo, Citta, Provincia, CodNazione, PartitaIva, CodiceFiscale, Esente, FlagSoggettoConai) VALUES (2, 1, 1, '2023-01-01', 'Edilnord S.r.l.', NULL, 'Via Borgo Palazzo 118', 'Bergamo', 'BG', 'IT', '02981450162', '02981450162', 0, 0);
INSERT INTO STDAnagraficheStorico (IdAnagrafica, IdRiga, TipoCliFor, DataAnagrafica, RagioneSociale, RagioneSociale2, Indirizzo, Citta, Provincia, CodNazione, PartitaIva, CodiceFiscale, Esente, FlagSoggettoConai) VALUES (3, 1, 1, '2024-06-30', 'Bianchi Mario', 'Ferramenta', 'Via San Faustino 12', 'Brescia', 'BS', 'IT', '03884200175', 'BNCMRA68C14B157V', 0, 0);
INSERT INTO STDAnagraficheStorico (IdAnagrafica, IdRiga, TipoCliFor, DataAnagrafica, RagioneSociale, Indirizzo, Citta, Provincia, CodNazione, PartitaIva, CodiceFiscale, Esente, CodIvaEsente, ValiditaAutorizzDa, ValiditaAutorizzA, NsNrAutorizz, NsDataAutorizz) VALUES (15, 1, 2, '2024-12-31', 'Acciaierie Venete S.p.A.', 'Riviera Francia 3', 'Padova', 'PD', 'IT', '02405160280', '02405160280', 1, 'NI8C', '2024-01-01', '2024-12-31', '2/2024', '2024-01-04');

-- Declarations of intent: ours to suppliers (TipoAnagrafica 2) and one received from a customer.
INSERT INTO STDDichiarazioniIntento (IdDichiarazione, IdAnagrafica, TipoAnagrafica, Anno, Protocollo, NumeroDichiarazione, DataDichiarazione, DataInizioValidita, DataFineValidita, CodIva, TipoDichiarazione, Importo) VALUES (1, 15, 2, 2025, '1/2025', '1', '2025-01-05', '2025-01-01', '2025-12-31', 'NI8C', 2, 100000.0);
INSERT INTO STDDichiarazioniIntento (IdDichiarazione, IdAnagrafica, TipoAnagrafica, Anno, Protocollo, NumeroDichiarazione, DataDichiarazione, DataInizioValidita, DataFineValidita, CodIva, TipoDichiarazione, Importo) VALUES (2, 16, 2, 2025, '2/2025', '2', '2025-02-03', '2025-02-01', '2025-02-28', 'NI8C', 1, 8500.0);
INSERT INTO STDDichiarazioniIntento (IdDichiarazione, IdAnagrafica, TipoAnagrafica, Anno, Protocollo, NumeroDichiarazione, DataDichiarazione, DataInizioValidita, DataFineValidita, CodIva, TipoDichiarazione, Importo) VALUES (3, 13, 1, 2025, '25031190477651209-000004', '4', '2025-01-08', '2025-01-01', '2025-12-31', 'NI8C', 2, 60000.0);

-- Agents' mandates and the commission shares of each mandate (summing to 100).
INSERT INTO STDAnagraficaAgentiMandati (IdValidita, IdAnagrafica, Dal, Al, TipoMandato, TipoAgente) VALUES (1, 23, '2024-01-01', '2024-12-31', 0, 0);
INSERT INTO STDAnagraficaAgentiMandati (IdValidita, IdAnagrafica, Dal, Al, TipoMandato, TipoAgente) VALUES (2, 23, '2025-01-01', NULL, 1, 0);
INSERT INTO STDAnagraficaAgentiMandati (IdValidita, IdAnagrafica, Dal, Al, TipoMandato, TipoAgente) VALUES (3, 24, '2025-01-01', NULL, 0, 0);
INSERT INTO STDAnagraficaAgentiMandati (IdValidita, IdAnagrafica, Dal, Al, TipoMandato, TipoAgente) VALUES (4, 25, '2024-07-01', NULL, 1, 1);
INSERT INTO STDAnagraficaAgentiMandatiQuote (IdRiga, IdAnagrafica, IdValidita, IdAgente, PercQuota) VALUES (1, 23, 1, 23, 100.0);
INSERT INTO STDAnagraficaAgentiMandatiQuote (IdRiga, IdAnagrafica, IdValidita, IdAgente, PercQuota) VALUES (2, 23, 2, 23, 70.0);
INSERT INTO STDAnagraficaAgentiMandatiQuote (IdRiga, IdAnagrafica, IdValidita, IdAgente, PercQuota) VALUES (3, 23, 2, 24, 30.0);
INSERT INTO STDAnagraficaAgentiMandatiQuote (IdRiga, IdAnagrafica, IdValidita, IdAgente, PercQuota) VALUES (4, 24, 3, 24, 100.0);
INSERT INTO STDAnagraficaAgentiMandatiQuote (IdRiga, IdAnagrafica, IdValidita, IdAgente, PercQuota) VALUES (5, 25, 4, 25, 100.0);
-- Agent 36: three consecutive mandates, the shares of each split with the area manager.
INSERT INTO STDAnagraficaAgentiMandati (IdValidita, IdAnagrafica, Dal, Al, TipoMandato, TipoAgente) VALUES (5, 36, '2023-01-01', '2023-12-31', 0, 0);
INSERT INTO STDAnagraficaAgentiMandati (IdValidita, IdAnagrafica, Dal, Al, TipoMandato, TipoAgente) VALUES (6, 36, '2024-01-01', '2024-06-30', 0, 0);
INSERT INTO STDAnagraficaAgentiMandati (IdValidita, IdAnagrafica, Dal, Al, TipoMandato, TipoAgente) VALUES (7, 36, '2024-07-01', NULL, 1, 0);
INSERT INTO STDAnagraficaAgentiMandatiQuote (IdRiga, IdAnagrafica, IdValidita, IdAgente, PercQuota) VALUES (6, 36, 5, 36, 100.0);
INSERT INTO STDAnagraficaAgentiMandatiQuote (IdRiga, IdAnagrafica, IdValidita, IdAgente, PercQuota) VALUES (7, 36, 6, 36, 60.0);
INSERT INTO STDAnagraficaAgentiMandatiQuote (IdRiga, IdAnagrafica, IdValidita, IdAgente, PercQuota) VALUES (8, 36, 6, 23, 40.0);
INSERT INTO STDAnagraficaAgentiMandatiQuote (IdRiga, IdAnagrafica, IdValidita, IdAgente, PercQuota) VALUES (9, 36, 7, 36, 50.0);
INSERT INTO STDAnagraficaAgentiMandatiQuote (IdRiga, IdAnagrafica, IdValidita, IdAgente, PercQuota) VALUES (10, 36, 7, 23, 30.0);
INSERT INTO STDAnagraficaAgentiMandatiQuote (IdRiga, IdAnagrafica, IdValidita, IdAgente, PercQuota) VALUES (11, 36, 7, 24, 20.0);
