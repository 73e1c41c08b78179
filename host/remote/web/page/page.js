'use strict';

// The page of the mechanic's phone. It shows the state that the host sends, and sends what was ticked.
// Texts of the host are put into the page as text only, never as HTML.

const undoTime = 5000; // ms in which a tick can be undone; page.css shows it too
const foreignDelay = 2000; // ms that other tabs wait longer than the tab of the tick, which may just undo it
const answerTime = 10000; // ms until a request counts as failed
const checkInterval = 25000; // ms without an event until the connection is checked
const acceptedTime = 120000; // ms for which accepted work is shown that the state does not hold
const longestWait = 15000; // ms between two attempts to connect
const largestBatch = 100; // works in one request
const longestNote = 1000; // characters
const controlCharacters = /[\u0000-\u0008\u000b-\u001f\u007f-\u009f]/g; // the server takes none of them
const refusals = ['invalid', 'unknown_car', 'unknown_op']; // sending again would not help

// ---- Texts ----------------------------------------------------------------------------------------------------

const texts = {
  ru: {
    garage: 'Гараж', skip: 'К содержанию', places: 'Разделы', close: 'Закрыть', cancel: 'Отмена',
    due: 'Пора', dueTitle: 'Пора сделать', done: 'Сделано', doneTitle: 'Сделано сегодня', karts: 'Карты',
    kartsTitle: 'Карты', filter: 'Номер карта',
    language: 'EN', languageLabel: 'EN: switch to English', languageOfLabel: 'en',
    signInTitle: 'Вход механика', code: 'Служебный код', letters: 'АБВ', lettersLabel: 'АБВ: код с буквами',
    codeHint: 'Код есть у каждого в списке людей программы хронометража.',
    signIn: 'Войти', signOut: 'Выйти', stay: 'Остаться', leaveTitle: 'Выйти?',
    leaveText: count => `Не отправлено работ: ${count}. Они останутся в этом браузере и уйдут, когда вы снова войдёте.`,
    emptyCode: 'Введите код.',
    wrongCode: left => `Код не подходит. Осталось попыток: ${left}.`,
    locked: 'Слишком много неверных кодов.', lockedFor: seconds => `Вход откроется через ${seconds} с.`,
    unlocked: 'Можно ввести код снова.',
    signInFailed: 'Нет связи с сервером. Попробуйте ещё раз.',
    signedOut: 'Сеанс завершён, войдите снова.',
    kept: (count, names) => `Не отправлено работ: ${count} (${names}). Они хранятся в этом браузере.`,
    connecting: 'Подключение…', online: 'На связи', signedOutState: 'Вход не выполнен',
    offline: 'Нет связи. Отмеченное хранится в этом браузере и уйдёт позже.',
    offlineWith: count => `Нет связи. В этом браузере хранится работ: ${count}, они уйдут позже.`,
    loading: 'Загрузка…', nothingDue: 'Всё сделано: сроки не превышены, жалоб нет.',
    noSuchKart: 'Нет карта с таким номером.', nothingDueFor: 'У карта с таким номером ничего не просрочено.',
    nothingDone: 'Сегодня ещё ничего не записано.', noKarts: 'Список картов пуст.',
    complaint: 'Жалоба', task: 'Задание', out: 'снят', kart: 'Карт',
    since: (ago, date) => `последний раз ${ago}, ${date}`, written: (ago, date) => `записано ${ago}, ${date}`,
    never: 'время неизвестно', justNow: 'только что',
    seconds: 'Часы', runs: 'Заезды', laps: 'Круги', of: (used, limit) => `${used} из ${limit}`, over: ', превышено',
    tick: 'Сделано', tickLabel: (op, kart) => `Сделано: ${op}, карт ${kart}`,
    note: 'Примечание', noteReplaces: 'Это сейчас записано. То, что останется в поле, заменит записанное.',
    tooLong: length => `Не больше ${longestNote} знаков, сейчас ${length}.`,
    nowCovered: 'Эту работу уже отметили, или она больше не нужна.',
    undoPlace: 'Можно отменить', undo: 'Отменить', undoLabel: (op, kart) => `Отменить: ${op}, карт ${kart}`,
    sentIn: seconds => `Отправится через ${seconds} с`,
    ticked: (op, kart) => `Отмечено: ${op}, карт ${kart}. Отменить можно пять секунд.`,
    undone: (op, kart) => `Отменено: ${op}, карт ${kart}`,
    counts: (all, stored) => `Записей: ${all}, из них в базе: ${stored}.`,
    states: { local: 'не отправлено', foreign: 'ждёт входа', refused: 'не принято', waiting: 'ждёт отправки',
      sent: 'отправлено', archived: 'в базе', deleted: 'удалено' },
    foreign: name => `Уйдёт, когда снова войдёт ${name}.`,
    refused: { invalid: 'Сервер не принял запись.', unknown_car: 'Такого карта больше нет.',
      unknown_op: 'Такой операции больше нет.' },
    again: 'Отправить снова', drop: 'Убрать', complaintNamed: text => `Жалоба: ${text}`,
    available: 'в работе', unavailable: 'снят',
    kartCounts: (all, available) => `Всего: ${all}, в работе: ${available}.`,
    switchFailed: number => `Карт ${number} не переключён: нет связи.`,
    switchRefused: number => `Карт ${number} не переключён: такого карта больше нет.`,
    switchIgnored: number => `Карт ${number} не переключён: программа хронометража не ответила.`,
    noStorage: 'Браузер не хранит данные этой страницы: не закрывайте её, пока работы не отправлены.',
  },
  en: {
    garage: 'Garage', skip: 'Skip to content', places: 'Places', close: 'Close', cancel: 'Cancel',
    due: 'Due', dueTitle: 'Due work', done: 'Done', doneTitle: 'Done today', karts: 'Karts', kartsTitle: 'Karts',
    filter: 'Kart number',
    language: 'РУ', languageLabel: 'РУ: переключить на русский', languageOfLabel: 'ru',
    signInTitle: 'Mechanic sign-in', code: 'Service code', letters: 'ABC', lettersLabel: 'ABC: code with letters',
    codeHint: 'Everyone’s code is in the list of people of the timing application.',
    signIn: 'Sign in', signOut: 'Sign out', stay: 'Stay', leaveTitle: 'Sign out?',
    leaveText: count => `Not sent yet: ${count}. They stay in this browser and are sent when you sign in again.`,
    emptyCode: 'Enter the code.',
    wrongCode: left => `Wrong code. Attempts left: ${left}.`,
    locked: 'Too many wrong codes.', lockedFor: seconds => `You can try again in ${seconds} s.`,
    unlocked: 'You can enter the code again.',
    signInFailed: 'No connection to the server. Try again.',
    signedOut: 'The session has ended, sign in again.',
    kept: (count, names) => `Not sent yet: ${count} (${names}). They are kept in this browser.`,
    connecting: 'Connecting…', online: 'Connected', signedOutState: 'Not signed in',
    offline: 'No connection. What you tick is kept in this browser and sent later.',
    offlineWith: count => `No connection. Kept in this browser and sent later: ${count}.`,
    loading: 'Loading…', nothingDue: 'All done: no limit is exceeded, no complaint is open.',
    noSuchKart: 'No kart has such a number.', nothingDueFor: 'Nothing is due for a kart with such a number.',
    nothingDone: 'Nothing was recorded today.', noKarts: 'There are no karts.',
    complaint: 'Complaint', task: 'Task', out: 'out of work', kart: 'Kart',
    since: (ago, date) => `last done ${ago}, ${date}`, written: (ago, date) => `recorded ${ago}, ${date}`,
    never: 'time unknown', justNow: 'just now',
    seconds: 'Hours', runs: 'Runs', laps: 'Laps', of: (used, limit) => `${used} of ${limit}`, over: ', exceeded',
    tick: 'Done', tickLabel: (op, kart) => `Done: ${op}, kart ${kart}`,
    note: 'Note', noteReplaces: 'This is recorded now. What you leave here replaces it.',
    tooLong: length => `At most ${longestNote} characters, now ${length}.`,
    nowCovered: 'Somebody has done this work already, or it is no longer due.',
    undoPlace: 'Can be undone', undo: 'Undo', undoLabel: (op, kart) => `Undo: ${op}, kart ${kart}`,
    sentIn: seconds => `Sent in ${seconds} s`,
    ticked: (op, kart) => `Done: ${op}, kart ${kart}. You can undo it for five seconds.`,
    undone: (op, kart) => `Undone: ${op}, kart ${kart}`,
    counts: (all, stored) => `Records: ${all}, stored at the track: ${stored}.`,
    states: { local: 'not sent', foreign: 'waits for sign-in', refused: 'refused', waiting: 'to be sent',
      sent: 'sent', archived: 'stored', deleted: 'deleted' },
    foreign: name => `Is sent when ${name} signs in again.`,
    refused: { invalid: 'The server refused the record.', unknown_car: 'This kart no longer exists.',
      unknown_op: 'This operation no longer exists.' },
    again: 'Send again', drop: 'Remove', complaintNamed: text => `Complaint: ${text}`,
    available: 'in work', unavailable: 'out of work',
    kartCounts: (all, available) => `Karts: ${all}, in work: ${available}.`,
    switchFailed: number => `Kart ${number} was not switched: no connection.`,
    switchRefused: number => `Kart ${number} was not switched: it no longer exists.`,
    switchIgnored: number => `Kart ${number} was not switched: the timing application did not answer.`,
    noStorage: 'The browser does not keep data of this page: leave it open until everything is sent.',
  },
};

// ---- Elements -------------------------------------------------------------------------------------------------

const byId = id => document.getElementById(id);

function make(tag, className, ...children) {
  const element = document.createElement(tag);
  if (className)
    element.className = className;
  element.append(...children);
  return element;
}

/** Leaves an element alone that shows the text already: a screen reader reads changes aloud. */
function setText(element, text) {
  if (element.textContent !== text)
    element.textContent = text;
}

function setAttribute(element, name, value) {
  if (element.getAttribute(name) !== value)
    element.setAttribute(name, value);
}

/** Shows one child for each item: keeps the child of a known key, so that focus and selection stay. */
function showList(list, items, keyOf, makeChild, updateChild) {
  const known = new Map([...list.children].map(child => [child.dataset.key, child]));
  const focused = document.activeElement;
  let next = list.firstElementChild;
  for (const item of items) {
    const key = String(keyOf(item));
    let child = known.get(key);
    known.delete(key);
    if (!child) {
      child = makeChild(item);
      child.dataset.key = key;
    }
    if (child === next)
      next = next.nextElementSibling;
    else
      list.insertBefore(child, next);
    updateChild(child, item);
  }
  for (const child of known.values())
    child.remove();
  if (focused !== document.activeElement && focused.isConnected)
    focused.focus({ preventScroll: true }); // a moved element loses the focus
}

// ---- What the browser keeps -----------------------------------------------------------------------------------

const workPrefix = 'garage.work.';
let storageWorks = true;
const unstored = new Map(); // works that the browser did not take

function readStored(name) {
  try {
    return localStorage.getItem(name);
  } catch {
    return null;
  }
}

function writeStored(name, value) {
  try {
    localStorage.setItem(name, value);
    return true;
  } catch {
    return false;
  }
}

/** Each work has an entry of its own: tabs cannot overwrite each other's works. */
function storeWork(work) {
  storageWorks = writeStored(workPrefix + work.key, JSON.stringify(work));
  if (storageWorks)
    unstored.delete(work.key);
  else
    unstored.set(work.key, work);
}

function removeWork(key) {
  unstored.delete(key);
  try {
    localStorage.removeItem(workPrefix + key);
  } catch {
    // Without a storage there is nothing to remove.
  }
}

function isWork(value) {
  return value && typeof value.key === 'string' && Number.isInteger(value.carId) && Number.isInteger(value.opId)
    && typeof value.comment === 'string' && typeof value.doneTime === 'string' && typeof value.person === 'object';
}

function storedWork(name) {
  try {
    const work = JSON.parse(localStorage.getItem(name));
    return isWork(work) ? work : null;
  } catch {
    return null;
  }
}

function storedNames() {
  try {
    return Object.keys(localStorage).filter(name => name.startsWith(workPrefix));
  } catch {
    return [];
  }
}

/** Everything that was ticked and is not known to be stored by the host, oldest first. */
function works() {
  const found = new Map(unstored);
  for (const name of storedNames()) {
    const work = storedWork(name);
    if (work)
      found.set(work.key, work);
  }
  return [...found.values()].sort((a, b) => a.doneTime < b.doneTime ? -1 : Number(a.doneTime > b.doneTime));
}

/** Random, so that no two phones make the same; crypto.randomUUID exists with TLS only. */
function newKey() {
  return [...crypto.getRandomValues(new Uint8Array(16))].map(byte => byte.toString(16).padStart(2, '0')).join('');
}

// ---- State ----------------------------------------------------------------------------------------------------

let language = 'ru';
let text = texts.ru;
let numbers;
let person = null; // who is signed in
let connection = 'connecting'; // or online, offline, signedOut
let state = null; // what the host sent last
let clockOffset = 0; // host's clock minus the phone's, ms
let shownPlace = 'due';
let filter = '';
let openedRow = null; // the due line of the open dialog
let lastComment = ''; // the stored text with which the dialog started
let nextLine; // where the focus goes when the last tick can no longer be undone
let lockedUntil = 0; // Date.now() at which a code may be entered again
let sendTimer = 0;
const ownKeys = new Set(); // ticked in this tab
const accepted = new Map(); // taken by the host, not yet in its state: key -> work
const drafts = new Map(); // notes of undone ticks: due line -> note
const switching = new Map(); // kart -> what the phone asked for

const hostNow = () => Date.now() + clockOffset;
const minuteOf = time => Math.floor(time / 60000);
const lineKey = row => `${row.car_id} ${row.op_id} ${row.local_id}`;
/** The time tells a line whose work was done since from the line before. */
const lineOf = row => `${lineKey(row)} ${row.since}`;

// ---- Requests -------------------------------------------------------------------------------------------------

/** The answer's status and object; status 0 if there is none. */
async function request(method, path, body) {
  const options = { method, cache: 'no-store', credentials: 'same-origin', signal: AbortSignal.timeout(answerTime) };
  if (body !== undefined) {
    options.headers = { 'Content-Type': 'application/json' };
    options.body = JSON.stringify(body);
  }
  try {
    const answer = await fetch(path, options);
    return { status: answer.status, data: answer.status === 204 ? {} : await answer.json().catch(() => ({})) };
  } catch {
    return { status: 0, data: {} };
  }
}

let events = null;
let lastEvent = 0; // performance.now()
let retryTimer = 0;
let retryWait = 1000;
let connecting = false;

function setConnection(name) {
  connection = name;
  render();
}

function closeEvents() {
  if (events)
    events.close();
  events = null;
}

/** Asks for the state first: its answer says why there is no connection, which an EventSource does not. */
async function connect() {
  if (connecting || !person && connection === 'signedOut')
    return;
  connecting = true;
  clearTimeout(retryTimer);
  closeEvents();
  if (!person)
    await findPerson();
  const answer = connection === 'signedOut' ? { status: 401 } : await request('GET', '/api/state');
  connecting = false;
  if (answer.status === 200 && person) {
    takeState(answer.data);
    listen();
  } else if (answer.status === 401) {
    endSession();
  } else {
    lose();
  }
}

async function findPerson() {
  const answer = await request('GET', '/api/session');
  if (answer.status === 200)
    person = answer.data.person;
  else if (answer.status === 401)
    setConnection('signedOut');
}

function listen() {
  events = new EventSource('/api/events');
  const source = events;
  source.addEventListener('state', event => {
    if (source !== events)
      return;
    retryWait = 1000;
    lastEvent = performance.now();
    connection = 'online';
    takeState(JSON.parse(event.data));
    send();
  });
  source.addEventListener('signed_out', () => {
    if (source === events)
      endSession();
  });
  source.addEventListener('error', () => {
    if (source === events)
      lose();
  });
}

function lose() {
  closeEvents();
  if (connection === 'signedOut')
    return;
  setConnection('offline');
  clearTimeout(retryTimer);
  retryTimer = setTimeout(connect, retryWait);
  retryWait = Math.min(longestWait, retryWait * 2);
}

function reconnectNow() {
  if (document.hidden || connection === 'signedOut')
    return;
  if (connection === 'online') {
    lastEvent = -checkInterval; // while the phone slept, the connection may have gone
    checkConnection();
    return;
  }
  retryWait = 1000;
  connect();
}

/** A connection that was cut without a word does not end an EventSource for minutes. */
async function checkConnection() {
  if (connection !== 'online' || document.hidden || performance.now() - lastEvent < checkInterval)
    return;
  lastEvent = performance.now();
  const answer = await request('GET', '/api/state');
  if (answer.status === 200)
    takeState(answer.data);
  else if (answer.status === 401)
    endSession();
  else
    lose();
}

function takeState(data) {
  if (state && state.epoch === data.epoch && data.version < state.version)
    return;
  state = data;
  clockOffset = Date.parse(data.now) - Date.now() || 0;
  forgetAccepted();
  for (const kart of state.karts) {
    if (switching.get(kart.id) === kart.available)
      switching.delete(kart.id);
  }
  render();
}

/** The state holds what was accepted, unless it is of another day or one of too many. */
function forgetAccepted() {
  const known = new Set(state.records.map(record => record.key));
  for (const [key, work] of accepted) {
    if (known.has(key) || Date.now() - work.acceptedAt > acceptedTime)
      accepted.delete(key);
  }
}

// ---- Sending what was ticked ----------------------------------------------------------------------------------

const isMine = work => person !== null && work.person.id === person.id;

/** Milliseconds until the work may be sent. A clock that was set back does not hold it. */
function timeLeft(work) {
  const left = work.sendAt - Date.now();
  return left > undoTime ? 0 : left;
}

const canUndo = work => !work.error && timeLeft(work) > 0;
const sendDelay = work => Math.max(0, timeLeft(work) + (ownKeys.has(work.key) ? 0 : foreignDelay));
const toSend = () => works().filter(work => isMine(work) && !work.error && sendDelay(work) <= 0);

function asService(work) {
  return { key: work.key, car_id: work.carId, op_id: work.opId, local_id: work.completes, done_time: work.doneTime,
    comment: work.comment };
}

/** Sends what is ready. The same work may be sent twice, by another tab too: its key makes the host store it once. */
async function send() {
  planSending();
  if (sending || connection !== 'online')
    return;
  const batch = toSend().slice(0, batchSize);
  if (batch.length === 0)
    return;
  sending = true;
  const answer = await request('POST', '/api/services', { services: batch.map(asService) });
  sending = false;
  takeAnswer(batch, answer);
}

let sending = false;
let batchSize = largestBatch;

function takeAnswer(batch, answer) {
  if (answer.status === 200 && Array.isArray(answer.data.results)) {
    batchSize = largestBatch;
    for (const result of answer.data.results)
      takeResult(batch.find(work => work.key === result.key), result);
    render();
    send();
  } else if (answer.status === 401) {
    endSession();
  } else if (answer.status === 0) {
    lose();
  } else if ((answer.status === 400 || answer.status === 413) && batch.length > 1) {
    batchSize = 1; // one at a time shows which one it is
    send();
  } else if (answer.status === 400 || answer.status === 413) {
    takeResult(batch[0], { error: 'invalid' });
    render();
    send();
  } else {
    setTimeout(send, 2000); // busy
  }
}

function takeResult(work, result) {
  if (!work)
    return;
  if (Number.isInteger(result.id)) {
    removeWork(work.key);
    accepted.set(work.key, { ...work, acceptedAt: Date.now() });
    if (state)
      forgetAccepted();
  } else if (refusals.includes(result.error)) {
    storeWork({ ...work, error: result.error });
  } else {
    storeWork({ ...work, sendAt: Date.now() + undoTime - 1 }); // not now: again in a while
  }
}

function planSending() {
  clearTimeout(sendTimer);
  const waits = works().filter(work => isMine(work) && !work.error).map(sendDelay).filter(wait => wait > 0);
  if (waits.length > 0)
    sendTimer = setTimeout(send, Math.min(...waits));
}

function tick(row, note) {
  const now = Date.now();
  const work = {
    key: newKey(), carId: row.car_id, car: row.car, opId: row.op_id, op: row.op, line: lineOf(row),
    completes: row.kind === 'due' ? -1 : row.local_id, comment: note, doneTime: new Date(hostNow()).toISOString(),
    person, sendAt: now + undoTime,
  };
  drafts.delete(work.line);
  nextLine = lineBeside(work.line);
  ownKeys.add(work.key);
  storeWork(work);
  announce(text.ticked(work.op, work.car));
  render();
  if (!storageWorks)
    showNotice(text.noStorage);
  planSending();
  const button = byId('undo').lastElementChild?.querySelector('button');
  if (button)
    button.focus();
}

function undo(key) {
  const work = works().find(one => one.key === key);
  if (!work || !canUndo(work))
    return;
  removeWork(key);
  drafts.set(work.line, work.comment);
  announce(text.undone(work.op, work.car));
  render();
  planSending();
  const row = shownLine(work.line);
  if (row && shownPlace === 'due')
    row.querySelector('button').focus();
  else
    byId(`${shownPlace}-title`).focus();
}

function undoLast() {
  const last = works().filter(canUndo).pop();
  if (last)
    undo(last.key);
}

// ---- Signing in and out ---------------------------------------------------------------------------------------

function endSession() {
  closeEvents();
  clearTimeout(retryTimer);
  const hadSession = person !== null;
  person = null;
  state = null;
  accepted.clear();
  switching.clear();
  for (const dialog of document.querySelectorAll('dialog[open]'))
    dialog.close('');
  setConnection('signedOut');
  byId('sign-in-reason').dataset.text = hadSession ? 'signedOut' : '';
  render();
  byId('code').focus();
}

async function signIn(code) {
  const answer = await request('POST', '/api/session', { code });
  const error = byId('sign-in-error');
  if (answer.status === 200) {
    person = answer.data.person;
    byId('code').value = '';
    error.textContent = '';
    setConnection('connecting');
    await connect();
    byId(`${shownPlace}-title`).focus();
  } else if (answer.data.error === 'wrong_code') {
    error.textContent = text.wrongCode(answer.data.remaining);
    byId('code').select();
  } else if (answer.data.error === 'locked') {
    error.textContent = text.locked;
    lockedUntil = Date.now() + answer.data.seconds * 1000;
    showLock();
  } else {
    error.textContent = text.signInFailed;
  }
}

function showLock() {
  const seconds = Math.ceil((lockedUntil - Date.now()) / 1000);
  const wait = byId('sign-in-wait');
  if (lockedUntil > 0 && seconds <= 0) {
    lockedUntil = 0;
    byId('sign-in-error').textContent = '';
    announce(text.unlocked);
  }
  wait.hidden = lockedUntil === 0;
  setText(wait, lockedUntil ? text.lockedFor(seconds) : '');
  byId('sign-in-button').setAttribute('aria-disabled', String(lockedUntil > 0));
  if (lockedUntil > 0)
    setTimeout(showLock, 500);
}

async function submitCode(event) {
  event.preventDefault();
  const code = byId('code').value.trim();
  const button = byId('sign-in-button');
  if (lockedUntil > 0 || button.disabled)
    return;
  if (code === '') {
    byId('sign-in-error').textContent = text.emptyCode;
    byId('code').focus();
    return;
  }
  button.disabled = true;
  await signIn(code);
  button.disabled = false;
}

function askToSignOut() {
  const count = works().filter(isMine).length;
  if (count === 0) {
    signOut();
    return;
  }
  setText(byId('leave-text'), text.leaveText(count));
  byId('leave').showModal();
}

async function signOut() {
  const answer = await request('DELETE', '/api/session');
  if (answer.status === 204 || answer.status === 401) {
    person = null;
    endSession();
  } else {
    lose();
  }
}

// ---- Karts ----------------------------------------------------------------------------------------------------

async function switchKart(id) {
  const kart = state?.karts.find(one => one.id === id);
  if (!kart || switching.has(id))
    return;
  const wanted = !kart.available;
  switching.set(id, wanted);
  render();
  const answer = await request('PUT', `/api/karts/${id}`, { available: wanted });
  if (answer.status === 200) {
    setTimeout(() => giveUpSwitching(id, wanted, 'switchIgnored'), answerTime);
    return;
  }
  giveUpSwitching(id, wanted, answer.status === 404 ? 'switchRefused' : 'switchFailed');
  if (answer.status === 401)
    endSession();
  else if (answer.status === 0)
    lose();
}

function giveUpSwitching(id, wanted, reason) {
  if (switching.get(id) !== wanted)
    return;
  switching.delete(id);
  const kart = state?.karts.find(one => one.id === id);
  showNotice(text[reason](kart ? kart.number : String(id)));
  render();
}

// ---- Figures and times ----------------------------------------------------------------------------------------

const units = [['year', 31536000], ['month', 2592000], ['day', 86400], ['hour', 3600], ['minute', 60]];

function agoText(time) {
  const seconds = Math.round((hostNow() - time) / 1000);
  const unit = units.find(([, length]) => Math.abs(seconds) >= length);
  return unit ? numbers.ago.format(-Math.trunc(seconds / unit[1]), unit[0]) : text.justNow;
}

function dateText(time) {
  const now = new Date(hostNow());
  const date = new Date(time);
  if (date.getFullYear() !== now.getFullYear())
    return numbers.yearDate.format(date);
  return date.toDateString() === now.toDateString() ? numbers.time.format(date) : numbers.date.format(date);
}

function whenText(row) {
  const time = Date.parse(row.since);
  if (Number.isNaN(time))
    return text.never;
  return (row.kind === 'due' ? text.since : text.written)(agoText(time), dateText(time));
}

/** Two decimals where one would show a limit that is exceeded as equal to it. */
function measureText(name, used, limit) {
  if (name !== 'seconds')
    return text.of(numbers.whole.format(used), numbers.whole.format(limit));
  const tenths = [used, limit].map(value => numbers.tenths.format(value / 3600));
  if (tenths[0] !== tenths[1])
    return text.of(tenths[0], tenths[1]);
  return text.of(numbers.hundredths.format(used / 3600), numbers.hundredths.format(limit / 3600));
}

function measures(row) {
  if (!row.driven || !row.limits)
    return [];
  return ['seconds', 'runs', 'laps'].filter(name => row.limits[name] > 0)
    .map(name => ({ name, used: row.driven[name], limit: row.limits[name] }));
}

const opText = work => (work.opId ?? work.op_id) < 0 ? text.complaintNamed(work.op) : work.op;

// ---- What is due ----------------------------------------------------------------------------------------------

/** Whether a record of today stands for the line: the module announces its new list a moment later. */
function isRecorded(row) {
  const since = minuteOf(Date.parse(row.since) || 0);
  return state.records.some(record => {
    if (record.state === 'deleted' || record.car_id !== row.car_id || record.op_id !== row.op_id)
      return false;
    if (row.kind !== 'due')
      return record.key !== null && record.local_id === row.local_id; // others may stand for the open record itself
    const done = minuteOf(Date.parse(record.done_time));
    return done > since || done === since && record.state !== 'archived';
  });
}

function dueRows() {
  const ticked = new Set([...works(), ...accepted.values()].filter(work => !work.error).map(work => work.line));
  return state.due.filter(row => !ticked.has(lineOf(row)) && !isRecorded(row));
}

const kindOrder = ['complaint', 'open', 'due'];
const rank = row => kindOrder.indexOf(row.kind);
const matchesFilter = number => number.toLowerCase().includes(filter.trim().toLowerCase());

/** The karts with open work first, then by number. */
function dueByKart(rows) {
  const karts = new Map();
  for (const row of rows) {
    const kart = karts.get(row.car_id) ?? { id: row.car_id, number: row.car, model: row.model, rows: [] };
    kart.rows.push(row);
    karts.set(row.car_id, kart);
  }
  for (const kart of karts.values()) {
    kart.rows.sort((a, b) => rank(a) - rank(b));
    kart.isOpen = kart.rows[0].kind !== 'due';
  }
  return [...karts.values()]
    .sort((a, b) => Number(b.isOpen) - Number(a.isOpen) || numbers.order.compare(a.number, b.number));
}

function renderDue() {
  const rows = state ? dueRows() : [];
  const shown = dueByKart(rows.filter(row => matchesFilter(row.car)));
  showList(byId('due-list'), shown, kart => kart.id, makeCard, updateCard);
  setText(byId('due-count'), rows.length ? String(rows.length) : '');
  let empty = '';
  if (!state)
    empty = text.loading;
  else if (rows.length === 0)
    empty = text.nothingDue;
  else if (shown.length === 0)
    empty = state.karts.some(kart => matchesFilter(kart.number)) ? text.nothingDueFor : text.noSuchKart;
  setText(byId('due-empty'), empty);
  byId('due-empty').hidden = empty === '';
  updateDialog(rows);
}

function makeCard() {
  const card = make('article', 'card');
  const parts = card.parts = {
    title: make('h2'), kart: make('span', 'hidden-text'), plate: make('span', 'plate'), model: make('span', 'model'),
    out: make('span', 'chip'), list: make('div'),
  };
  parts.title.append(parts.kart, ' ', parts.plate, ' ', parts.model);
  card.append(make('div', 'card-head', parts.title, parts.out), parts.list);
  return card;
}

function updateCard(card, kart) {
  const { parts } = card;
  setText(parts.kart, text.kart);
  setText(parts.plate, kart.number);
  setText(parts.model, kart.model);
  setText(parts.out, text.out);
  parts.out.hidden = state.karts.find(one => one.id === kart.id)?.available ?? true;
  showList(parts.list, kart.rows, lineKey, makeRow, updateRow);
}

function makeRow() {
  const row = make('div', 'work');
  const parts = row.parts = {
    chip: make('span', 'chip'), name: make('h3', 'name'), stored: make('p', 'stored'), when: make('p', 'when'),
    button: make('button', 'go'), meters: make('div', 'meters'),
  };
  parts.button.type = 'button';
  parts.button.addEventListener('click', () => openWork(row.shown));
  row.append(make('div', 'what', parts.chip, parts.name, parts.stored, parts.when), parts.button, parts.meters);
  return row;
}

function updateRow(element, row) {
  const { parts } = element;
  element.shown = row;
  element.line = lineOf(row);
  parts.chip.hidden = row.kind === 'due';
  parts.chip.className = `chip ${row.kind === 'complaint' ? 'alarm' : 'warn'}`;
  setText(parts.chip, row.kind === 'complaint' ? text.complaint : text.task);
  setText(parts.name, row.op);
  setText(parts.stored, row.kind === 'open' ? row.comment : '');
  parts.stored.hidden = parts.stored.textContent === '';
  setText(parts.when, whenText(row));
  setText(parts.button, text.tick);
  setAttribute(parts.button, 'aria-label', text.tickLabel(row.op, row.car));
  const shown = measures(row);
  parts.meters.hidden = shown.length === 0;
  showList(parts.meters, shown, measure => measure.name, makeMeter, updateMeter);
}

function makeMeter() {
  const meter = make('p', 'meter');
  const parts = meter.parts = { name: make('span'), value: make('b'), over: make('span', 'hidden-text'),
    scale: make('span', 'scale') };
  parts.scale.setAttribute('aria-hidden', 'true');
  meter.append(parts.name, ' ', parts.value, parts.over, parts.scale);
  return meter;
}

function updateMeter(meter, { name, used, limit }) {
  const { parts } = meter;
  meter.classList.toggle('over', used > limit);
  setText(parts.name, text[name]);
  setText(parts.value, measureText(name, used, limit));
  setText(parts.over, used > limit ? text.over : '');
  parts.scale.style.setProperty('--used', String(Math.min(used / limit, 10 / 7)));
}

// ---- The dialog of a tick -------------------------------------------------------------------------------------

function openWork(row) {
  openedRow = row;
  lastComment = row.kind === 'due' ? '' : row.comment ?? '';
  byId('note').value = drafts.get(lineOf(row)) ?? lastComment;
  byId('note-error').textContent = '';
  showOpened();
  byId('work').showModal();
  // On a phone the focus would open the keyboard over the buttons, and most work needs no note.
  (matchMedia('(pointer: fine)').matches ? byId('note') : byId('work-confirm')).focus();
}

function showOpened() {
  setText(byId('work-title'), opText(openedRow));
  setText(byId('work-kart'), openedRow.car);
  setText(byId('work-model'), openedRow.model);
  byId('note-hint').hidden = lastComment === '';
}

/** Follows the state while the dialog is open: the work may be done by others, its stored text may change. */
function updateDialog(rows) {
  if (!openedRow || !state)
    return;
  const row = rows.find(one => lineOf(one) === lineOf(openedRow));
  byId('work-confirm').disabled = !row;
  if (!row) {
    setText(byId('note-error'), text.nowCovered);
    return;
  }
  if (byId('note-error').textContent === text.nowCovered)
    setText(byId('note-error'), '');
  const comment = row.kind === 'due' ? '' : row.comment ?? '';
  if (byId('note').value === lastComment)
    byId('note').value = comment;
  openedRow = row;
  lastComment = comment;
  showOpened();
}

function confirmWork(event) {
  event.preventDefault();
  const note = byId('note').value.replace(controlCharacters, ' ').trim();
  if (!openedRow || byId('work-confirm').disabled)
    return;
  if (note.length > longestNote) {
    byId('note-error').textContent = text.tooLong(note.length);
    byId('note').focus();
    return;
  }
  const row = openedRow;
  byId('work').close();
  openedRow = null;
  tick(row, note);
}

// ---- What can be undone, messages -----------------------------------------------------------------------------

function renderUndo() {
  const bar = byId('undo');
  const undoable = works().filter(canUndo);
  const hadFocus = bar.contains(document.activeElement);
  bar.hidden = undoable.length === 0;
  showList(bar, undoable, work => work.key, makeUndo, updateUndo);
  if (hadFocus && !bar.contains(document.activeElement))
    focusNext();
  clearTimeout(renderUndo.timer);
  if (undoable.length > 0)
    renderUndo.timer = setTimeout(render, 250);
}

const shownLine = line => [...document.querySelectorAll('#due-list .work')].find(element => element.line === line);

/** The line below, or above the last one. */
function lineBeside(line) {
  const lines = [...document.querySelectorAll('#due-list .work')].map(element => element.line);
  const place = lines.indexOf(line);
  return lines[place + 1] ?? lines[place - 1];
}

/** Where a keyboard or a screen reader goes on after a tick. */
function focusNext() {
  const next = shownPlace === 'due' && shownLine(nextLine)?.querySelector('button') || byId(`${shownPlace}-title`);
  next.focus({ preventScroll: true });
}

function makeUndo(work) {
  const bar = make('div', 'bar');
  const parts = bar.parts = { left: make('span', 'left'), name: make('b'), button: make('button'),
    time: make('span', 'time') };
  parts.button.type = 'button';
  parts.button.addEventListener('click', () => undo(work.key));
  parts.time.setAttribute('aria-hidden', 'true');
  parts.time.style.setProperty('--begun', `${timeLeft(work) - undoTime}ms`);
  bar.append(make('p', '', parts.name, parts.left), parts.button, parts.time);
  return bar;
}

function updateUndo(bar, work) {
  const { parts } = bar;
  setText(parts.name, `${work.car}: ${work.op}`);
  setText(parts.left, text.sentIn(Math.ceil(timeLeft(work) / 1000)));
  setText(parts.button, text.undo);
  setAttribute(parts.button, 'aria-label', text.undoLabel(work.op, work.car));
}

/** Read aloud by screen readers. */
function announce(message) {
  byId('announcer').textContent = message;
}

function showNotice(message) {
  byId('notice').hidden = false;
  byId('notice-text').textContent = message;
  render();
}

// ---- Done today -----------------------------------------------------------------------------------------------

/** The works of this browser and the records of the host as lines of one list, latest first. */
function doneLines() {
  const known = new Set((state?.records ?? []).map(record => record.key));
  const lines = [...works(), ...accepted.values()].filter(work => !known.has(work.key)).map(work => ({
    key: work.key, state: localState(work), time: Date.parse(work.doneTime), kart: work.car, op: opText(work),
    person: work.person.name, note: work.comment, work,
  }));
  for (const record of state?.records ?? []) {
    lines.push({
      key: record.key ?? `record ${record.id}`, state: record.state, time: Date.parse(record.done_time),
      kart: record.car, op: opText(record), person: record.person, note: record.comment,
    });
  }
  return lines.sort((a, b) => b.time - a.time);
}

function localState(work) {
  if (accepted.has(work.key))
    return 'sent';
  if (work.error)
    return 'refused';
  return person === null || isMine(work) ? 'local' : 'foreign';
}

const stateChips = { archived: 'good', refused: 'alarm', waiting: 'warn', local: 'warn', foreign: 'warn' };

function renderDone() {
  const lines = doneLines();
  const unsent = lines.filter(line => ['local', 'foreign', 'refused'].includes(line.state)).length;
  showList(byId('done-list'), lines, line => line.key, makeRecord, updateRecord);
  setText(byId('done-count'), unsent ? String(unsent) : '');
  setText(byId('done-summary'), lines.length
    ? text.counts(numbers.whole.format(lines.length),
      numbers.whole.format(lines.filter(line => line.state === 'archived').length)) : '');
  setText(byId('done-empty'), state ? text.nothingDone : text.loading);
  byId('done-empty').hidden = lines.length > 0;
}

function makeRecord(line) {
  const item = make('li', 'record');
  const parts = item.parts = {
    kart: make('span', 'hidden-text'), plate: make('span', 'plate'), name: make('span', 'name'),
    chip: make('span', 'chip'), who: make('p', 'who'), note: make('p', 'note'), why: make('p', 'why'),
    again: make('button'), drop: make('button'),
    answers: make('div', 'answers'),
  };
  parts.again.type = parts.drop.type = 'button';
  parts.again.addEventListener('click', () => sendAgain(line.key));
  parts.drop.addEventListener('click', () => dropRefused(line.key));
  parts.answers.append(parts.again, parts.drop);
  item.append(parts.kart, parts.plate, parts.name, parts.chip, parts.who, parts.note, parts.why, parts.answers);
  return item;
}

function updateRecord(item, line) {
  const { parts } = item;
  item.classList.toggle('deleted', line.state === 'deleted');
  setText(parts.kart, text.kart);
  setText(parts.plate, line.kart);
  setText(parts.name, line.op);
  setText(parts.chip, text.states[line.state] ?? line.state);
  parts.chip.className = `chip ${stateChips[line.state] ?? ''}`;
  setText(parts.who, [dateText(line.time), line.person].filter(Boolean).join(', '));
  setText(parts.note, line.note ?? '');
  parts.note.hidden = !line.note;
  const why = { refused: text.refused[line.work?.error], foreign: text.foreign(line.person) }[line.state] ?? '';
  setText(parts.why, why);
  parts.why.hidden = why === '';
  setText(parts.again, text.again);
  setText(parts.drop, text.drop);
  parts.answers.hidden = line.state !== 'refused';
}

function sendAgain(key) {
  const work = works().find(one => one.key === key);
  if (!work)
    return;
  storeWork({ ...work, error: undefined, sendAt: Date.now() });
  ownKeys.add(key);
  render();
  send();
}

function dropRefused(key) {
  removeWork(key);
  render();
  byId('done-title').focus();
}

// ---- Karts in and out of work ---------------------------------------------------------------------------------

function renderKarts() {
  const karts = state?.karts ?? [];
  const shown = karts.filter(kart => matchesFilter(kart.number))
    .sort((a, b) => numbers.order.compare(a.number, b.number) || a.id - b.id);
  showList(byId('kart-list'), shown, kart => kart.id, makeKart, updateKart);
  setText(byId('karts-summary'), state ? text.kartCounts(numbers.whole.format(karts.length),
    numbers.whole.format(karts.filter(kart => kart.available).length)) : '');
  let empty = state ? text.noSuchKart : text.loading;
  if (state && karts.length === 0)
    empty = text.noKarts;
  setText(byId('karts-empty'), empty);
  byId('karts-empty').hidden = shown.length > 0;
}

function makeKart(kart) {
  const item = make('li', 'kart');
  const parts = item.parts = { button: make('button'), kart: make('span', 'hidden-text'), plate: make('span', 'plate'),
    model: make('span', 'model'), is: make('span', 'is') };
  const shownState = make('span', 'state', parts.is, make('span', 'knob'));
  shownState.setAttribute('aria-hidden', 'true'); // aria-checked says it
  parts.button.type = 'button';
  parts.button.setAttribute('role', 'switch');
  parts.button.addEventListener('click', () => switchKart(kart.id));
  parts.button.append(make('span', 'which', parts.kart, ' ', parts.plate, ' ', parts.model), shownState);
  item.append(parts.button);
  return item;
}

function updateKart(item, kart) {
  const { parts } = item;
  setText(parts.plate, kart.number);
  setText(parts.model, kart.model);
  setText(parts.is, kart.available ? text.available : text.unavailable);
  setText(parts.kart, text.kart);
  setAttribute(parts.button, 'aria-checked', String(kart.available));
  setAttribute(parts.button, 'aria-busy', String(switching.has(kart.id)));
}

// ---- The page -------------------------------------------------------------------------------------------------

function renderFrame() {
  const isSignedOut = connection === 'signedOut';
  const kept = works().filter(work => !canUndo(work));
  byId('sign-in').hidden = !isSignedOut;
  byId('places').hidden = isSignedOut;
  byId('sign-out').hidden = person === null;
  byId('person').hidden = person === null;
  setText(byId('person'), person?.name ?? '');
  for (const place of ['due', 'done', 'karts'])
    byId(place).hidden = isSignedOut || place !== shownPlace;
  for (const link of document.querySelectorAll('nav a')) {
    if (link.dataset.place === shownPlace)
      link.setAttribute('aria-current', 'page');
    else
      link.removeAttribute('aria-current');
  }
  let shown = { connecting: text.connecting, online: text.online, signedOut: text.signedOutState }[connection];
  if (connection === 'offline')
    shown = kept.length ? text.offlineWith(kept.length) : text.offline;
  setText(byId('connection'), shown);
  byId('connection').dataset.is = connection;
  renderReason(kept);
  document.title = `${isSignedOut ? text.signInTitle : text[`${shownPlace}Title`]} · ${text.garage}`;
}

function renderReason(kept) {
  const reason = byId('sign-in-reason');
  const lines = [];
  if (reason.dataset.text === 'signedOut')
    lines.push(text.signedOut);
  if (kept.length > 0)
    lines.push(text.kept(kept.length, [...new Set(kept.map(work => work.person.name))].join(', ')));
  setText(reason, lines.join(' '));
  reason.hidden = lines.length === 0;
}

function render() {
  renderFrame();
  if (connection !== 'signedOut') {
    renderDue();
    renderDone();
    renderKarts();
  }
  renderUndo();
}

function showPlace() {
  const place = location.hash.slice(1);
  shownPlace = ['due', 'done', 'karts'].includes(place) ? place : 'due';
  render();
  scrollTo(0, 0);
}

function setLanguage(name) {
  language = name;
  text = texts[language];
  const date = { day: 'numeric', month: 'short', hour: '2-digit', minute: '2-digit' };
  const decimals = count => new Intl.NumberFormat(language, { minimumFractionDigits: 0, maximumFractionDigits: count });
  numbers = {
    whole: decimals(0), tenths: decimals(1), hundredths: decimals(2),
    ago: new Intl.RelativeTimeFormat(language),
    date: new Intl.DateTimeFormat(language, { ...date, hourCycle: 'h23' }),
    yearDate: new Intl.DateTimeFormat(language, { ...date, year: 'numeric', hourCycle: 'h23' }),
    time: new Intl.DateTimeFormat(language, { hour: '2-digit', minute: '2-digit', hourCycle: 'h23' }),
    order: new Intl.Collator(language, { numeric: true }),
  };
  document.documentElement.lang = language;
  for (const element of document.querySelectorAll('[data-text]')) {
    if (typeof text[element.dataset.text] === 'string')
      element.textContent = text[element.dataset.text];
  }
  for (const element of document.querySelectorAll('[data-label]'))
    element.setAttribute('aria-label', text[element.dataset.label]);
  for (const element of document.querySelectorAll('[data-placeholder]'))
    element.placeholder = text[element.dataset.placeholder];
  const button = byId('language');
  button.textContent = text.language;
  button.setAttribute('aria-label', text.languageLabel);
  button.lang = text.languageOfLabel;
}

function firstLanguage() {
  const kept = readStored('garage.language');
  if (kept in texts)
    return kept;
  return navigator.language.toLowerCase().startsWith('ru') ? 'ru' : 'en';
}

function switchLanguage() {
  setLanguage(language === 'ru' ? 'en' : 'ru');
  writeStored('garage.language', language);
  byId('sign-in-error').textContent = '';
  render();
}

/** A key that is held must not press the button that the focus has just come to. */
function ignoreHeldKey(event) {
  if (event.repeat && (event.key === 'Enter' || event.key === ' ') && event.target.matches('button'))
    event.preventDefault();
}

function handleKey(event) {
  ignoreHeldKey(event);
  const isTyping = event.target.matches('input, textarea');
  if (event.key.toLowerCase() === 'z' && (event.ctrlKey || event.metaKey) && !isTyping) {
    event.preventDefault();
    undoLast();
  }
  if (event.key === 'Enter' && (event.ctrlKey || event.metaKey) && event.target === byId('note')) {
    event.preventDefault(); // or it would press the button that gets the focus now
    byId('work-form').requestSubmit();
  }
}

function setFilter(event) {
  filter = event.target.value;
  for (const input of document.querySelectorAll('[data-filter]')) {
    if (input !== event.target)
      input.value = filter;
  }
  render();
}

function toggleLetters(event) {
  const code = byId('code');
  const letters = code.inputMode === 'numeric';
  code.inputMode = letters ? 'text' : 'numeric';
  event.target.setAttribute('aria-pressed', String(letters));
  code.focus();
}

/** The bars stand above the places, whose height depends on the size of the text. */
function measureBars() {
  const style = document.documentElement.style;
  const measure = new ResizeObserver(() => {
    style.setProperty('--nav-height', `${byId('places').offsetHeight}px`);
    style.setProperty('--bars-height', `${byId('bars').offsetHeight}px`);
  });
  measure.observe(byId('places'));
  measure.observe(byId('bars'));
}

function connectElements() {
  byId('language').addEventListener('click', switchLanguage);
  byId('sign-out').addEventListener('click', askToSignOut);
  byId('sign-in-form').addEventListener('submit', submitCode);
  byId('letters').addEventListener('click', toggleLetters);
  byId('work-form').addEventListener('submit', confirmWork);
  byId('work-cancel').addEventListener('click', () => byId('work').close());
  byId('work').addEventListener('close', () => { openedRow = null; });
  byId('leave').addEventListener('close', event => {
    if (event.target.returnValue === 'leave')
      signOut();
    event.target.returnValue = '';
  });
  byId('notice-close').addEventListener('click', () => {
    byId('notice').hidden = true;
    byId('notice-text').textContent = '';
    render();
  });
  byId('skip').addEventListener('click', event => {
    event.preventDefault();
    byId('main').focus();
  });
  for (const input of document.querySelectorAll('[data-filter]'))
    input.addEventListener('input', setFilter);
  document.addEventListener('keydown', handleKey);
  document.addEventListener('visibilitychange', reconnectNow);
  addEventListener('hashchange', showPlace);
  addEventListener('online', reconnectNow);
  addEventListener('offline', lose);
  addEventListener('storage', () => { // another tab
    render();
    planSending();
  });
}

setLanguage(firstLanguage());
connectElements();
measureBars();
showPlace();
connect();
setInterval(checkConnection, 5000);
setInterval(render, 30000); // how long ago
