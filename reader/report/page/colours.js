// Colours that differ for everyone, also on paper.

const kInk = '#1b2530';
const kGrid = '#e3e8ed';
const kRecording = '#0072b2';
const kCrash = '#d55e00';
const kCovert = '#a9508a';
const kNotRecording = '#7a8794';
const kEnds = '#008a63';
const kGap = '#e39a00';
const kLoss = '#b3182b';

// Of the lines of a chart, in their order.
const kLines = [kRecording, kCrash, '#009e73', kCovert, '#8a6d00', '#56b4e9', '#000000', '#777777'];
const kDashes = ['', '7 3', '2 2.5', '9 3 2 3'];

const kLaneColours = { recording: kRecording, covert: kCovert, crash: kCrash };
const kGroupColours = { Inputs: '#8a6d00', Microphones: '#009e73', Cameras: '#a9508a', Streams: '#3b9ad9',
  Reception: '#68737d', 'Gaps and losses': kGap };
