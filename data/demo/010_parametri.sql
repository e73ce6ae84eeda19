-- Demo data: host parameters and the company's own data.

INSERT INTO CORParametri (Chiave, Valore) VALUES ('AbilitaGestioneDateValidita', '0');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('AbilitaStoricoAnagrafiche', '1');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('AcqNumeroSconti', '2');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('AcqStampaEtichetteDaNumeroColli', '0');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('CodContoClienti', '14.01');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('CodContoFornitori', '40.01');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('CodDivisaBase', 'EUR');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('ControlloCFBloccante', '0');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('ConvertiInDivisaDoc', '0');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('CreaAutomPC', '1');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('GestisciPNInfragruppo', '0');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('IdAnagraficaCollegata', '0');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('IdAnagraficaManuale', '0');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('Identificativo1', 'RagioneSociale');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('Identificativo2', 'PartitaIva');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('Identificativo3', 'CodiceFiscale');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('IvaCassa', '0');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('MaskConto', '##.##.#####');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('MaskContoAnalitica', '##.###');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('ModalitaRicercaAnagrafica', '30');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('OutlookAttivo', '0');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('PrecisioneFullText', '0');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('SoggettoARitenutaAccontoAttiva', '0');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('StampaEtichetteDaNumeroColli', '1');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('TipoContoAnalitica', '0');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('VenNumeroSconti', '4');
INSERT INTO CORParametri (Chiave, Valore) VALUES ('VerificaParitaCitta', '0');

-- The company (one row, IdParametri 0).
INSERT INTO STDParametriAzienda (IdParametri, RagioneSociale, PartitaIva, CodiceFiscale, PersonaFisica, Sesso, DataNascita, LuogoNascita, ProvNascita, Indirizzo, Cap, Citta, Provincia, CodNazione, Telefono, Fax, E_Mail, E_mailPec, CodRegimeFiscale) VALUES (0, 'Ferramenta Brianza Forniture S.r.l.', '04827130156', '04827130156', 0, NULL, NULL, NULL, NULL, 'Via dell''Artigianato 14', '20861', 'Brugherio', 'MB', 'IT', '039 2871450', '039 2871451', 'amministrazione@ferramentabrianza.it', 'ferramentabrianza@pec.it', 'RF01');
INSERT INTO STDParametriAziendaExt (IdParametri, Cognome, Nome, CodiceAteco) VALUES (0, NULL, NULL, '46.74.10');

-- Marks a demonstration database: the web host then offers the demo user.
INSERT INTO CORParametri (Chiave, Valore) VALUES ('DatiDimostrativi', '1');
