// What the browser tests and the screenshot script share: a real database made
// with the corvina program (init, users add, an optional script of actions that
// seeds rows through the module), a real `corvina serve` on a free loopback
// port, and Debian's Chromium driven by playwright-core with a fresh profile.
// Nothing is mocked; everything is removed when the caller stops it.

import { spawn, spawnSync } from 'node:child_process';
import { mkdtempSync, rmSync, existsSync } from 'node:fs';
import { tmpdir } from 'node:os';
import net from 'node:net';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import { chromium } from 'playwright-core';

const here = path.dirname(fileURLToPath(import.meta.url));
export const repo = path.resolve(here, '..', '..', '..');

// The program under test: $CORVINA_PROGRAM (ctest sets it), else the build's.
export const program = process.env.CORVINA_PROGRAM || path.join(repo, 'build', 'bin', 'corvina');
export const chromiumPath = process.env.CORVINA_CHROMIUM || '/usr/bin/chromium';

const env = {
  ...process.env,
  CORVINA_DATA_DIR: process.env.CORVINA_DATA_DIR || path.join(repo, 'data'),
  CORVINA_WEB_DIR: process.env.CORVINA_WEB_DIR || path.join(repo, 'host', 'web'),
};

function need(file, what) {
  if (!existsSync(file)) throw new Error(`${what} non trovato: ${file}`);
}

function run(args, input) {
  const r = spawnSync(program, args, { env, input, encoding: 'utf8', timeout: 60_000 });
  if (r.status !== 0) throw new Error(`corvina ${args.join(' ')} → ${r.status}\n${r.stdout}\n${r.stderr}`);
  return r.stdout;
}

// A database in a fresh temporary folder: schema and demo data, the users
// given ([name, password] pairs), then `actions` (JSON objects as in
// docs/script.md) run through `corvina script`. Returns {dir, db, script, sql, remove}.
export function createDatabase({ users = [['anna', 'Segreta-1']], actions = [] } = {}) {
  need(program, 'Il programma corvina');
  const dir = mkdtempSync(path.join(tmpdir(), 'corvina-web-'));
  const db = path.join(dir, 'web.db');
  run(['init', '--demo', db]);
  for (const [name, password] of users) run(['users', 'add', '--db', db, '--password', password, name]);
  const script = (lines) => run(['script', '--db', db, '-'], lines.map((a) => JSON.stringify(a)).join('\n') + '\n')
    .trim().split('\n').filter(Boolean).map((l) => JSON.parse(l));
  if (actions.length) script(actions);
  // Reads the database with the sqlite3 command line (JSON rows).
  const sql = (text) => {
    const r = spawnSync('sqlite3', ['-json', db, text], { encoding: 'utf8' });
    if (r.status !== 0) throw new Error(`sqlite3: ${r.stderr}`);
    return r.stdout.trim() ? JSON.parse(r.stdout) : [];
  };
  return { dir, db, script, sql, remove: () => rmSync(dir, { recursive: true, force: true }) };
}

function freePort() {
  return new Promise((resolve, reject) => {
    const s = net.createServer();
    s.once('error', reject);
    s.listen(0, '127.0.0.1', () => {
      const { port } = s.address();
      s.close(() => resolve(port));
    });
  });
}

async function answers(url, deadline) {
  while (Date.now() < deadline) {
    try {
      const r = await fetch(url);
      if (r.ok) return true;
    } catch {
      // not listening yet
    }
    await new Promise((r) => setTimeout(r, 100));
  }
  return false;
}

// `corvina serve` on the database; resolves when it answers on its address.
export async function startServer(db) {
  for (let attempt = 1; ; attempt++) {
    const port = await freePort();
    const child = spawn(program, ['serve', '--db', db, '--listen', `127.0.0.1:${port}`], { env, stdio: ['ignore', 'pipe', 'pipe'] });
    let output = '';
    child.stdout.on('data', (d) => { output += d; });
    child.stderr.on('data', (d) => { output += d; });
    const exited = new Promise((resolve) => child.once('exit', (code) => resolve(code)));
    const url = `http://127.0.0.1:${port}`;
    const up = await Promise.race([answers(`${url}/`, Date.now() + 20_000), exited.then(() => false)]);
    if (up) {
      return {
        url,
        output: () => output,
        async stop() {
          if (child.exitCode === null) {
            child.kill('SIGTERM');
            const timer = setTimeout(() => child.kill('SIGKILL'), 5000);
            await exited;
            clearTimeout(timer);
          }
        },
      };
    }
    child.kill('SIGKILL');
    await exited;
    // The free port may have been taken between the probe and the bind.
    if (attempt >= 3) throw new Error(`corvina serve non risponde:\n${output}`);
  }
}

export const chromiumArgs = ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
  '--disable-background-networking', '--disable-component-update', '--disable-sync'];

// Chromium with a fresh profile; returns {context, page, close}.
export async function launchBrowser({ viewport = { width: 1366, height: 800 } } = {}) {
  need(chromiumPath, 'Chromium');
  const profile = mkdtempSync(path.join(tmpdir(), 'corvina-chromium-'));
  const context = await chromium.launchPersistentContext(profile, {
    executablePath: chromiumPath,
    headless: true,
    args: chromiumArgs,
    viewport,
    locale: 'it-IT',
    timezoneId: 'Europe/Rome',
  });
  const page = context.pages()[0] || await context.newPage();
  return {
    context,
    page,
    async close() {
      await context.close();
      rmSync(profile, { recursive: true, force: true });
    },
  };
}
