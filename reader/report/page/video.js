// Videos beside the run. The cursor and the videos show the same time: moving one moves the others.

function fileUrl(file) {
  return file.split('/').map(encodeURIComponent).join('/');
}

function runTime(video) {
  return video.startMs + video.element.currentTime * 1000;
}

// Moves a video to a time of the run. Outside the video's time, says that there is no picture.
function showAt(run, video, ms) {
  const [at, length] = [(ms - video.startMs) / 1000, video.element.duration];
  const isOutside = at < 0 || at > length;
  video.element.classList.toggle('outside', isOutside);
  video.state.textContent = isOutside ? ' \u00b7 no picture at this time' : '';
  if (Number.isNaN(length)) return;
  video.wanted = Math.min(Math.max(at, 0), length);
  if (Math.abs(video.element.currentTime - video.wanted) > 0.001) video.element.currentTime = video.wanted;
}

// While a video plays, it moves the cursor and corrects other videos that drift.
function playAlong(run, view, video) {
  const mostDriftMs = 150;
  const turn = () => {
    if (view.playing !== video) return;
    const ms = runTime(video);
    goTo(run, view, ms);
    for (const other of video.others)
      if (!other.element.seeking && Math.abs(runTime(other) - ms) > mostDriftMs) showAt(run, other, ms);
    requestAnimationFrame(turn);
  };
  view.playing = video;
  for (const other of video.others) other.element.play().catch(() => {});  // play fails on an ended video
  turn();
}

function followVideo(run, view, video) {
  video.element.addEventListener('play', () => { if (!view.playing) playAlong(run, view, video); });
  video.element.addEventListener('pause', () => {
    if (view.playing !== video) return;
    view.playing = null;
    for (const other of video.others) other.element.pause();
    goTo(run, view, runTime(video));
  });
  // Ignores seeks that the cursor caused.
  video.element.addEventListener('seeked', () => {
    if (!view.playing && Math.abs(video.element.currentTime - video.wanted) > 0.01) goTo(run, view, runTime(video));
  });
  video.element.addEventListener('error', () => {
    video.state.textContent = ' \u00b7 cannot be shown: is it still where it was, and in a format that the browser plays?';
  });
}

function drawVideo(parent, video) {
  const box = add(parent, 'figure');
  video.element = add(box, 'video', { controls: '', preload: 'auto', muted: '', playsinline: '', src: fileUrl(video.file) });
  video.element.muted = true;
  video.element.setAttribute('aria-label', video.file);
  const caption = add(box, 'figcaption', {}, video.file);
  video.state = add(caption, 'span');
  video.wanted = 0;
}

function drawVideos(section, run, view) {
  if (!run.videos) return;
  add(section, 'h2', { class: 'screen' }, run.videos.length > 1 ? 'Videos' : 'Video');
  const grid = add(section, 'div', { class: 'videos screen' });
  for (const video of run.videos) drawVideo(grid, video);
  for (const video of run.videos) {
    video.others = run.videos.filter((one) => one !== video);
    followVideo(run, view, video);
  }
  view.followers.push((ms) => {
    if (ms === null || view.playing) return;
    for (const video of run.videos) showAt(run, video, ms);
  });
}
