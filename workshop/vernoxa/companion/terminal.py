"""The prompt on a terminal: history, and Tab completes what can stand there."""

from __future__ import annotations

from typing import Iterator

from prompt_toolkit import PromptSession
from prompt_toolkit.completion import CompleteEvent, Completer, Completion, get_common_complete_suffix
from prompt_toolkit.document import Document
from prompt_toolkit.key_binding import KeyBindings, KeyPressEvent
from prompt_toolkit.patch_stdout import patch_stdout

from .view import View
from .words import Words, until_interrupted


async def prompt(name: str, words: Words, view: View) -> None:
    """Until the end: carries out each line. `name` stands before the prompt."""
    keys = KeyBindings()
    keys.add("tab")(_complete)
    session: PromptSession = PromptSession(completer=_Completer(words), key_bindings=keys)
    with patch_stdout(raw=True):
        while True:
            try:
                line = await session.prompt_async(f"{name}> ")
                if await until_interrupted(words.run(line)) is None:
                    view.line(name, "no longer waited for")
            except KeyboardInterrupt:
                continue
            except EOFError:
                return


class _Completer(Completer):
    def __init__(self, words: Words):
        self._words = words

    def get_completions(self, document: Document, complete_event: CompleteEvent) -> Iterator[Completion]:
        line = document.text_before_cursor.lstrip()
        piece = line.rpartition(" ")[2].rpartition("=")[2].rpartition(",")[2]
        for text, purpose in self._words.complete(line):
            yield Completion(text, -len(piece), display_meta=purpose)


def _complete(event: KeyPressEvent) -> None:
    """Tab. The menu is made in the background while one types, and a Tab that comes before it is there is passed over by
    prompt_toolkit; here it completes what is certain."""
    buffer = event.current_buffer
    if buffer.complete_state:
        buffer.complete_next()
        return
    found = list(buffer.completer.get_completions(buffer.document, CompleteEvent(completion_requested=True)))
    if len(found) == 1:
        buffer.apply_completion(found[0])
    elif suffix := get_common_complete_suffix(buffer.document, found):
        buffer.insert_text(suffix)
