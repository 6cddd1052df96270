// The parts of the HTML page that are the same for every document.
#pragma once

namespace vosmere::tool {

/// Before the title of the page.
inline constexpr char kPageHead[] = R"html(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="referrer" content="no-referrer">
<meta http-equiv="Content-Security-Policy"
  content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
<style>
:root { color-scheme: light dark; --back: #fff; --text: #1b1f24; --quiet: #59636e; --line: #d5dae0;
  --link: #0550ae; --mark: #ddf4ff; --warn: #8a4600; --warn-back: #fff3dc; --badge: #e7ebef;
  --unread: #0a5cc4; --flag: #b3261e; }
@media (prefers-color-scheme: dark) { :root { --back: #14181d; --text: #e3e8ee; --quiet: #9aa5b1;
  --line: #303842; --link: #78b7ff; --mark: #12344f; --warn: #f4b963; --warn-back: #38290f;
  --badge: #2a323b; --unread: #3d8bff; --flag: #f0716a; } }
body { margin: 0 auto; max-width: 70rem; padding: 0 1rem 2rem; background: var(--back); color: var(--text);
  font: 15px/1.5 system-ui, sans-serif; }
header { position: sticky; top: 0; padding: .8rem 0 .6rem; background: var(--back);
  border-bottom: 1px solid var(--line); display: flex; flex-wrap: wrap; gap: .6rem; align-items: center; }
h1 { font-size: 1.1rem; margin: 0 auto 0 0; overflow-wrap: anywhere; }
input, button { font: inherit; color: inherit; background: var(--back); border: 1px solid var(--quiet);
  border-radius: 6px; padding: .2rem .6rem; }
input { width: 16rem; max-width: 100%; }
output { color: var(--quiet); min-width: 6rem; }
ul { list-style: none; margin: 0 0 0 .5rem; padding: 0 0 0 .9rem; border-left: 1px solid var(--line); }
#tree, #findings { margin: .6rem 0; padding: 0; border: 0; }
summary, .l { padding: .1rem .4rem; border-radius: 6px; overflow-wrap: anywhere; }
.l { margin-left: 1.05rem; }
summary { cursor: pointer; }
summary:hover, .l:hover { background: var(--mark); }
:focus-visible { outline: 2px solid var(--link); outline-offset: 1px; }
a { color: var(--link); text-decoration: none; }
a:hover { text-decoration: underline; }
summary::before, .l::before { content: attr(data-k); color: var(--quiet); font-size: .85em; margin-right: .4rem; }
b { font-weight: 600; }
small { color: var(--quiet); display: block; margin-left: 1.2rem; white-space: pre-line; }
.t { background: var(--badge); border-radius: 9px; padding: 0 .5rem; font-size: .8em; margin-left: .3rem; }
.unread { background: var(--unread); color: #fff; }
.flag { background: var(--flag); color: #fff; }
@media (prefers-color-scheme: dark) { .unread, .flag { color: #101317; } }
.w { display: block; margin: .1rem 0 .1rem 1.2rem; padding: 0 .5rem; color: var(--warn);
  background: var(--warn-back); border-left: 3px solid var(--warn); font-size: .9em; }
#findings .w { margin-left: 0; }
.only li:not(.has) { display: none; }
.only .hit.l, .only .hit > details > summary { background: var(--mark); }
@media print { header button, input { display: none; } header { position: static; } }
</style>
)html";

/// After the tree.
inline constexpr char kPageScript[] = R"html(<script>
'use strict';
const tree = document.getElementById('tree'), find = document.getElementById('find');
const found = document.getElementById('found');
let rows, texts, before, timer;
const index = () => {
  rows = [...tree.querySelectorAll('summary, .l')];
  texts = rows.map(row => row.textContent.toLowerCase());
};
const itemOf = row => row.closest('li');
function search() {
  const words = find.value.toLowerCase().split(/\s+/).filter(Boolean);
  if (!rows) index();
  for (const item of tree.querySelectorAll('.has')) item.classList.remove('has', 'hit');
  tree.classList.toggle('only', words.length > 0);
  if (!words.length) {
    if (before) for (const [details, open] of before) details.open = open;
    before = null;
    found.textContent = '';
    return;
  }
  if (!before) before = [...tree.querySelectorAll('details')].map(details => [details, details.open]);
  let count = 0;
  rows.forEach((row, at) => {
    if (!words.every(word => texts[at].includes(word))) return;
    ++count;
    const item = itemOf(row);
    item.classList.add('has', 'hit');
    for (let up = item.parentElement.closest('li'); up; up = up.parentElement.closest('li')) {
      if (up.classList.contains('has') && up.firstElementChild.open) break;
      up.firstElementChild.open = true;
      up.classList.add('has');
    }
  });
  found.textContent = count === 1 ? '1 found' : count + ' found';
}
find.addEventListener('input', () => { clearTimeout(timer); timer = setTimeout(search, 120); });
const fold = open => { for (const details of tree.querySelectorAll('details')) details.open = open; };
if (tree.querySelectorAll('li').length < 300) fold(true);
document.getElementById('open').addEventListener('click', () => fold(true));
document.getElementById('close').addEventListener('click', () => fold(false));
const seen = row => row.checkVisibility ? row.checkVisibility() : row.offsetParent !== null;
function go(row) {
  if (!row) return;
  row.tabIndex = 0;
  row.focus();
  row.scrollIntoView({block: 'nearest'});
}
function step(row, by) {
  if (!rows) index();
  let at = rows.indexOf(row);
  do at += by; while (rows[at] && !seen(rows[at]));
  go(rows[at]);
}
document.addEventListener('keydown', event => {
  if (event.altKey || event.ctrlKey || event.metaKey) return;
  const row = event.target.closest('summary, .l'), key = event.key;
  if (key === '/' && event.target !== find) find.focus();
  else if (key === 'Escape' && event.target === find) { find.value = ''; search(); }
  else if (key === 'ArrowDown' && event.target === find) step(null, 1);
  else if (row && key === 'ArrowDown') step(row, 1);
  else if (row && key === 'ArrowUp') step(row, -1);
  else if (row && key === 'ArrowRight' && row.tagName === 'SUMMARY') row.parentElement.open = true;
  else if (row && key === 'ArrowLeft') {
    if (row.tagName === 'SUMMARY' && row.parentElement.open) row.parentElement.open = false;
    else {
      const up = itemOf(row).parentElement.closest('details');
      if (up) go(up.firstElementChild);
    }
  } else return;
  event.preventDefault();
});
</script>
)html";

}  // namespace vosmere::tool
