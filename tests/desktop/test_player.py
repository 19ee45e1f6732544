"""Videos in windows of their own, and the pages that they come from."""

import os
import signal

from support.clipboard import text_of
from support.waiting import wait_until

COLOUR = "#2060c0"
VIDEO = "abcdefghijk"
PLACE = ["--size", "500x700", "--top-left"]
# The player's offer to try again, and that of the page that tells about a dead one.
AGAIN, RELOAD = (0x26, 0x22, 0x1E), (0xFF, 0xFD, 0xF7)
# A page like the video site's, whose video is a box that says how it is treated.
WATCH = """<div id=movie_player style='position:fixed;inset:0'>
<video style='width:100%;height:100%'></video></div>
<script>
const video = document.querySelector("video")
let playing = true
Object.defineProperty(video, "paused", { get: () => !playing })
Object.defineProperty(video, "currentTime", { get: () => 61.9 })
video.pause = () => { playing = false; fetch("/paused") }
onclick = () => fetch("/clicked")
</script>"""


def watching(application, site, host="www.youtube.com.localhost"):
    site.page("/watch", COLOUR, WATCH)
    return application.show(site.url(f"/watch?v={VIDEO}", host), COLOUR, *PLACE)


def press_the_button(window, pointer):
    """It shows itself over the video, to the right of its middle and below."""
    frame = window.frame()
    at = frame.width - 30, frame.height // 2 + 150
    pointer.move(*window.centre())
    wait_until(lambda: window.colour(at[0] - 17, at[1]) != COLOUR, "the button appears")
    pointer.click(frame.x + at[0], frame.y + at[1])


def test_a_video_pops_out(running, site, desktop):
    logged = len(running.log())
    window = watching(running, site)
    press_the_button(window, desktop.input)
    player = wait_until(lambda: set(running.windows()) - {window}, "the video's window comes").pop()
    assert player.frame()[2:] == (960, 540)
    running.wait_until_logged(f"/player?v={VIDEO}&playing=true&t=61\n", logged)
    wait_until(lambda: player.title() == "Velto Video", lambda: f"the video's window, not {player.title()}")
    site.wait_for("/paused")
    assert (site.count("/paused"), site.count("/clicked")) == (1, 0)


def test_a_video_moves_its_window(running, site, desktop):
    window = watching(running, site)
    wait_until(window.has_focus, "the window has the keyboard")
    x, y = window.centre()
    desktop.input.drag((x, y), (x + 2, y + 2))
    site.wait_for("/clicked")
    assert window.frame() == (0, 0, 500, 700)
    desktop.input.move(x, y)
    desktop.input.button(True)
    desktop.input.move(x + 40, y + 30)
    window.wait_for_frame(40, 30, 500, 700)
    desktop.input.move(x + 70, y + 20)
    window.wait_for_frame(70, 20, 500, 700)
    desktop.input.button(False)


def test_other_sites_videos_are_left_alone(running, site, desktop):
    window = watching(running, site, host="127.0.0.1")
    x, y = window.centre()
    desktop.input.drag((x, y), (x + 40, y + 30))
    desktop.input.click(470, 500)
    site.wait_for("/clicked")
    assert running.windows() == [window]
    assert window.frame() == (0, 0, 500, 700)


def test_a_player_that_dies_comes_back(running):
    """Its address is nowhere to be fetched from, and the video cannot be loaded here, as its page says."""
    player = running.hand_over(f"velto-player://youtube?v={VIDEO}")
    wait_until(player.has_focus, "the video's window has the keyboard")
    said = wait_until(lambda: player.middle_of(AGAIN), "it offers to try again")
    assert said[1] > player.centre()[1]
    assert VIDEO in text_of(player, running.desktop.input)

    for pid in running.web_processes():
        os.kill(pid, signal.SIGKILL)
    reload = wait_until(lambda: player.middle_of(RELOAD), "the window offers to load it again")
    running.desktop.input.click(*reload)
    wait_until(lambda: player.middle_of(AGAIN) and not player.middle_of(RELOAD), "the player is back")
    again = running.open(f"https://velto.example/player?v={VIDEO}")
    assert again.frame()[2:] == (960, 540)
    wait_until(lambda: again.middle_of(AGAIN), "its web address leads to the player")
