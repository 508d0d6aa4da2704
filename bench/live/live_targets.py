"""The table of the live screen's benchmark, and what it must show."""

HEAD = f"{'scene':14} {'way':14} {'p50':>7} {'p95':>7} {'p99':>7} {'fps':>6} {'kB/s':>8} {'CPU %':>6}  {'of it server, X, proxy':22} {'SSIM':>8} {'exact':>7}"
TEXT = ("typing", "window", "scroll-copy", "scroll-redraw")


def show(value, digits=1):
    return "-" if value is None else f"{value:.{digits}f}"


def make_row(scene, way, result):
    parts = result["cpuParts"]
    shares = "  ".join(show(parts.get(name)) for name in ("server", "X", "proxy"))
    latency = result["latency"]
    return (f"{scene:14} {way:14} {show(latency['p50']):>7} {show(latency['p95']):>7} {show(latency['p99']):>7} {show(result['fps']):>6} "
            f"{show(result['kBps']):>8} {show(result['cpu']):>6}  {shares:22} {show(result.get('ssim'), 4):>8} {show(result.get('exactMs'), 0):>7}")


def make_table(medians):
    lines = ["", HEAD]
    for scene, ways in medians.items():
        lines += [make_row(scene, way, result) for way, result in ways.items()]
    lines.append("")
    for scene, ways in medians.items():
        for way, result in ways.items():
            more = []
            if "idle-cpu" in result:
                more.append(f"idle {show(result['idle-cpu'])} % {show(result['idlePictures'], 0)} pictures")
                more.append(f"click p50 {show(result['click']['p50'])} p95 {show(result['click']['p95'])} ms")
            if "resumeMs" in result:
                more.append(f"current {show(result['resumeMs'], 0)} ms after a stop")
            if "stages" in result:
                more.append("stages p50/p95/p99 " + ", ".join(
                    f"{name} {'/'.join(show(times[p]) for p in ('p50', 'p95', 'p99'))}" for name, times in result["stages"].items()))
            if more:
                lines.append(f"{scene} {way}: {'; '.join(more)}")
    return "\n".join(lines)


class Judge:
    def __init__(self):
        self.targets = []

    def at_most(self, what, value, limit):
        if value is not None and limit is not None:
            self.targets.append({"what": what, "value": value, "limit": limit, "met": value <= limit})

    def at_least(self, what, value, limit):
        if value is not None:
            self.targets.append({"what": what, "value": value, "limit": limit, "atLeast": True, "met": value >= limit})


def judge(medians):
    judge_ = Judge()
    for scene, ways in medians.items():
        for form in ("native", "page"):
            ours = ways.get(f"ours-{form}")
            if ours is None:
                continue
            name = f"{scene} {form}"
            judge_.at_least(f"{name}: fps", ours["fps"], 29.0)
            judge_against_x11vnc(judge_, name, ours, ways.get(f"x11vnc-{form}"))
            judge_against_xvnc(judge_, name, scene, ours, ways.get(f"xvnc-{form}"))
            judge_alone(judge_, name, scene, form, ours)
    return judge_.targets


def judge_against_x11vnc(judge_, name, ours, peer):
    if peer is not None and peer["latency"]["p50"] is not None:
        judge_.at_most(f"{name}: latency, half of x11vnc's", ours["latency"]["p50"], 0.5 * peer["latency"]["p50"])
        judge_.at_most(f"{name}: bytes, half of x11vnc's", ours["kBps"], 0.5 * peer["kBps"])
        judge_.at_most(f"{name}: CPU, as much as x11vnc's", ours["cpu"], peer["cpu"])


def judge_against_xvnc(judge_, name, scene, ours, peer):
    if peer is not None and peer["latency"]["p50"] is not None:
        judge_.at_most(f"{name}: latency, 1.2 of Xvnc's", ours["latency"]["p50"], 1.2 * peer["latency"]["p50"])
        share = 2 if scene in TEXT else 0.5 if scene == "redraw" else 0.2
        judge_.at_most(f"{name}: bytes, {share} of Xvnc's", ours["kBps"], share * peer["kBps"])


def judge_alone(judge_, name, scene, form, ours):
    if scene == "typing":
        judge_.at_most(f"{name}: CPU", ours["cpu"], 10)
        judge_.at_most(f"{name}: idle CPU", ours["idle-cpu"], 1)
        judge_.at_most(f"{name}: idle pictures", ours["idlePictures"], 0)
        judge_.at_most(f"{name}: click to picture", ours["click"]["p50"], 15 if form == "native" else 30)
    judge_.at_most(f"{name}: current after a stop", ours.get("resumeMs"), 120)
    if form == "native":
        # A picture that is never exact has no time.
        exact = ours.get("exactMs")
        judge_.at_most(f"{name}: exact after rest", 1e9 if exact is None else exact, 500)
        if ours.get("ssim") is not None:
            judge_.at_least(f"{name}: SSIM in motion", ours["ssim"], 0.99)
    elif "stages" in ours:
        judge_.at_most(f"{name}: decoding in the page", ours["stages"]["decode"]["p50"], 12)


def make_verdicts(targets):
    lines = ["", "targets"]
    for target in targets:
        sign = ">=" if target.get("atLeast") else "<="
        lines.append(f"{'met   ' if target['met'] else 'MISSED'}  {target['what']:52} {target['value']:10.2f} {sign} {target['limit']:.2f}")
    met = sum(target["met"] for target in targets)
    lines.append(f"{met} of {len(targets)} met")
    return "\n".join(lines)
