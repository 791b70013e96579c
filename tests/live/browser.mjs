// A headless Chromium that is asked through its pipe, without a network.
import { spawn } from 'node:child_process';
import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

export class Browser {
  constructor(program) {
    this.profile = mkdtempSync(join(tmpdir(), 'zelm-browser-'));
    this.process = spawn(program, ['--headless', '--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-sync',
      '--disable-background-networking', '--disable-component-update', '--host-resolver-rules=MAP * ~NOTFOUND',
      '--remote-debugging-pipe', `--user-data-dir=${this.profile}`], { stdio: ['ignore', 'ignore', 'ignore', 'pipe', 'pipe'] });
    this.waiting = new Map();
    this.asked = 0;
    this.said = [];
    this.fetched = [];
    this.failed = new Promise((_, fail) => {
      this.process.on('error', fail);
      this.process.on('exit', code => fail(new Error(`the browser ended with ${code}`)));
    });
    this.failed.catch(() => {});
    let rest = '';
    this.process.stdio[4].setEncoding('utf8').on('data', chunk => {
      const messages = (rest + chunk).split('\0');
      rest = messages.pop();
      messages.map(text => JSON.parse(text)).forEach(message => this.#take(message));
    });
  }

  #take(message) {
    const waiting = this.waiting.get(message.id);
    this.waiting.delete(message.id);
    if (waiting)
      message.error ? waiting.fail(new Error(JSON.stringify(message.error))) : waiting.done(message.result);
    const { method, params } = message;
    if (method === 'Runtime.consoleAPICalled' || method === 'Runtime.exceptionThrown' || method === 'Log.entryAdded')
      this.said.push(JSON.stringify(params));
    if (method === 'Network.requestWillBeSent' && !/^(blob|data):/.test(params.request.url))
      this.fetched.push(params.request.url);
    if (method === 'Target.attachedToTarget' && params.targetInfo.type === 'worker')
      this.#watch(params.sessionId).catch(() => {});
  }

  ask(method, params = {}, sessionId = undefined) {
    const id = ++this.asked;
    this.process.stdio[3].write(JSON.stringify({ id, method, params, sessionId }) + '\0');
    return Promise.race([this.failed, new Promise((done, fail) => this.waiting.set(id, { done, fail }))]);
  }

  async #watch(session) {
    await this.ask('Runtime.enable', {}, session);
    await this.ask('Network.enable', {}, session);
    await this.ask('Runtime.runIfWaitingForDebugger', {}, session);
  }

  async open(url, width = 1280, height = 900) {
    const { targetId } = await this.ask('Target.createTarget', { url: 'about:blank' });
    const { sessionId } = await this.ask('Target.attachToTarget', { targetId, flatten: true });
    this.session = sessionId;
    await this.ask('Target.setAutoAttach', { autoAttach: true, waitForDebuggerOnStart: true, flatten: true }, sessionId);
    await this.ask('Log.enable', {}, sessionId);
    await this.#watch(sessionId);
    await this.ask('Page.enable', {}, sessionId);
    await this.look(width, height);
    await this.ask('Page.navigate', { url }, sessionId);
  }

  /** How wide and high it shows pages, "light" or "dark". */
  async look(width, height, scheme = 'light') {
    await this.ask('Emulation.setDeviceMetricsOverride', { width, height, deviceScaleFactor: 1, mobile: false }, this.session);
    await this.ask('Emulation.setEmulatedMedia', { features: [{ name: 'prefers-color-scheme', value: scheme }] }, this.session);
  }

  /** A key on the keyboard, by its name: "Enter", "ArrowRight". */
  async press(key) {
    const codes = { Enter: 13, Escape: 27, ArrowLeft: 37, ArrowUp: 38, ArrowRight: 39, ArrowDown: 40 };
    const event = { key, code: key, windowsVirtualKeyCode: codes[key], ...(key === 'Enter' ? { text: '\r' } : {}) };
    await this.ask('Input.dispatchKeyEvent', { type: 'keyDown', ...event }, this.session);
    await this.ask('Input.dispatchKeyEvent', { type: 'keyUp', ...event }, this.session);
  }

  /** What an expression, or the promise that it gives, comes to. */
  async evaluate(expression) {
    const { result, exceptionDetails } = await this.ask('Runtime.evaluate', { expression, awaitPromise: true, returnByValue: true }, this.session);
    if (exceptionDetails)
      throw new Error(exceptionDetails.exception?.description ?? exceptionDetails.text);
    return result.value;
  }

  /** Waits until an expression holds. */
  async until(expression, seconds = 60) {
    const end = Date.now() + 1000 * seconds;
    while (!await this.evaluate(`Boolean(${expression})`)) {
      if (Date.now() > end)
        throw new Error(`after ${seconds} s still not: ${expression}`);
      await new Promise(done => setTimeout(done, 5));
    }
  }

  async picture() {
    return Buffer.from((await this.ask('Page.captureScreenshot', { format: 'png' }, this.session)).data, 'base64');
  }

  async close() {
    const gone = this.failed.catch(() => {});
    this.process.kill('SIGKILL');
    await gone;
    try {
      rmSync(this.profile, { recursive: true, force: true, maxRetries: 10, retryDelay: 100 });
    } catch {
      // What it started may write for a moment longer.
    }
  }
}
