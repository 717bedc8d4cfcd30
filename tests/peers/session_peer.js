// Somebody else's network session, of the package rtpmidi.
//   node session_peer.js listen PORT [NOTE]    waits on that control port
//   node session_peer.js connect PORT [NOTE]   invites whoever listens there
// Once it takes part it plays 60 down, NOTE (64) down, 60 up, and holds NOTE until it is ended. Each
// message that it hears is a line "heard HEX"; SIGTERM makes it say goodbye.
'use strict';
const { Session, Stream, logger } = require('rtpmidi');
logger.level = 'error';

// The package answers the third message of a clock exchange with a new exchange.
const synchronise = Stream.prototype.handleSynchronization;
Stream.prototype.handleSynchronization = function (message) {
    if (message.count !== 2) synchronise.call(this, message);
};

const [, , mode, port, note = 64] = process.argv;
const session = new Session(mode === 'listen' ? Number(port) : 17004 + 2 * (process.pid % 10000),
    'foreign', 'foreign', undefined, false);

// Its own sendMessage stamps no time; and what is sent before its clock is set is dropped, which
// only whoever invites sets.
function play(stream, bytes) {
    stream.sendMessage({ timestamp: session.now(),
                         commands: [{ deltaTime: 0, data: Buffer.from(bytes) }] });
}

function perform(stream) {
    if (mode === 'listen') stream.latency = stream.timeDifference = 0;
    if (stream.latency === null) return setTimeout(perform, 20, stream);
    const bars = [[0x90, 60, 100], [0x90, Number(note), 100], [0x80, 60, 0]];
    bars.forEach((bytes, beat) => setTimeout(play, 50 * beat, stream, bytes));
}

session.on('ready', () => {
    console.log('ready');
    if (mode === 'connect') session.connect({ address: '127.0.0.1', port: Number(port) });
});
session.on('message', (time, message) =>
    console.log('heard ' + Buffer.from(message).toString('hex')));
session.on('streamAdded', ({ stream }) => perform(stream));
process.on('SIGTERM', () => session.end(() => process.exit(0)));
session.start();
