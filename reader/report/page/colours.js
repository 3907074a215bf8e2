// The names of the colours. page.css has their values, for light and dark screens and for paper.

const kInk = 'var(--ink)';
const kPaper = 'var(--paper)';
const kGrid = 'var(--grid)';
const kRecording = 'var(--blue)';
const kCrash = 'var(--orange)';
const kCovert = 'var(--purple)';
const kNotRecording = 'var(--grey)';
const kEnds = 'var(--green)';
const kGap = 'var(--amber)';
const kLoss = 'var(--red)';

// The styles of a chart's lines, in order. Dashes tell lines apart without colours.
const kLines = [kRecording, kCrash, kEnds, kCovert, 'var(--ochre)', 'var(--sky)', kInk, kNotRecording];
const kDashes = ['', '7 3', '2 2.5', '9 3 2 3'];

const kLaneColours = { recording: kRecording, covert: kCovert, crash: kCrash };
const kGroupColours = { Inputs: 'var(--ochre)', Microphones: kEnds, Cameras: kCovert, Streams: 'var(--sky)',
  Reception: kNotRecording, 'Gaps and losses': kGap };
