"""Lets each file-system call of an operation fail once, lets all fail from each call on, and kills the program at each
call; then looks at the card. usage: sweep.py DRIVER CARD [-j N] [OPERATION...]

An operation is run once without a fault: its calls are the ones to fail, and what it leaves is the new state. After a
fault each file on the card has to be whole, old or new, and what isn't the operation's to change as it was. Where the
program tells success all has to be new; where it tells a failure the changes have to be unsaved still, and a second try
has to bring them. Nothing may hang."""

import argparse, collections, concurrent.futures, os, re, shutil, signal, subprocess, sys, tempfile

OPERATIONS = ['save', 'delete', 'export', 'import', 'backup']
# Those that change something get more errors than one.
CHANGING = set('mkdir mkdirat rename renameat renameat2 unlink unlinkat rmdir write pwrite64 sendfile copy_file_range '
               'fsync fdatasync sync_file_range syncfs ftruncate link linkat'.split())
NO_FILES = set('mmap munmap fcntl dup dup2 dup3 poll ppoll select pselect6 pipe2 eventfd2 execve chdir'.split())
CALL = re.compile(r'^(?:\d+ +)?(\w+)\((.*)')
LIMIT = 30  # seconds; then it hangs
SUCCESS, REPEATED, LOST_FLAGS, FAILED_AGAIN, FAILED = 0, 10, 11, 12, 13


def tree(folder):
    found = {}
    for place, _, files in os.walk(folder):
        for name in files:
            path = os.path.join(place, name)
            with open(path, 'rb') as file:
                found[os.path.relpath(path, folder)] = file.read()
    return found


def is_leftover(path):
    """Of an operation that was cut: never entered, never deleted, and told to the user."""
    return any(part.startswith('.tamboro-') for part in path.split(os.sep))


def without_leftovers(files):
    return {path: content for path, content in files.items() if not is_leftover(path)}


class Place:
    """A fresh card with what an operation finds besides it, as runs change it."""

    def __init__(self, operation, work, start):
        self.folder = tempfile.mkdtemp(dir=work)
        self.volume, self.work = os.path.join(self.folder, 'volume'), os.path.join(self.folder, 'work')
        shutil.copytree(start, self.folder, dirs_exist_ok=True)
        self.operation = operation
        self.first = os.path.join(self.work, 'first')

    def run(self, driver, tracing=(), operation=None, gone=False):
        command = [*tracing, driver, operation or self.operation, self.volume, self.work] + ['gone'] * gone
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   start_new_session=True)
        try:
            return process.wait(LIMIT)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
            return None

    def card(self):
        return tree(self.volume)

    def beside(self):
        """What the operation makes elsewhere: the export, the staged audio, the backup."""
        return {part: tree(os.path.join(self.work, part)) for part in ('export', 'staging', 'backup')}

    def drop(self):
        shutil.rmtree(self.folder)


def calls_in_window(log):
    """Each call between the driver's two marks: its name, its number among its like, whether it changes something."""
    counts, window, inside = collections.Counter(), [], False
    with open(log) as lines:
        for line in lines:
            match = CALL.match(line)
            if not match:
                continue
            name, rest = match.groups()
            if '"/fault-sweep/' in rest:
                inside = 'begin' in rest
                continue
            counts[name] += 1
            if inside and name not in NO_FILES:
                changes = name in CHANGING or name in ('open', 'openat') and 'O_CREAT' in rest
                window.append((name, counts[name], changes))
    return window


class Sweep:
    def __init__(self, driver, card, operation, work):
        self.driver, self.operation, self.work = driver, operation, work
        self.start = os.path.join(work, operation + '-start')
        os.makedirs(os.path.join(self.start, 'work'))
        shutil.copytree(card, os.path.join(self.start, 'volume'))
        if operation in ('export', 'backup'):  # over what an earlier run left, of the card as it was
            self.prepare()
        self.old = Place(operation, work, self.start)
        self.old_card, self.old_beside = self.old.card(), self.old.beside()
        done = Place(operation, work, self.start)
        log = os.path.join(work, operation + '.log')
        code = done.run(driver, ['strace', '-f', '-qq', '-o', log, '-e', 'trace=%file,%desc'])
        if code != SUCCESS:
            sys.exit(f'{operation} fails without a fault: {code}')
        self.new_card, self.new_beside = done.card(), done.beside()
        self.window = calls_in_window(log)
        if not self.window:
            sys.exit(f'{operation} makes no calls that are seen')
        done.drop()

    def prepare(self):
        place = Place(self.operation, self.work, self.start)
        if place.run(self.driver) != SUCCESS:
            sys.exit(f'{self.operation} fails without a fault')
        for part in ('export', 'backup'):
            made = os.path.join(place.work, part)
            if os.path.isdir(made):
                shutil.copytree(made, os.path.join(self.start, 'work', part))
                for path in tree(made):  # told from what the next run makes
                    with open(os.path.join(self.start, 'work', part, path), 'ab') as file:
                        file.write(b'older')
        place.drop()

    def cases(self):
        for at, (name, number, changes) in enumerate(self.window):
            for error in ['EIO', 'ENOSPC', 'EROFS'] if changes else ['EIO']:
                yield 'error', f'{name} {number} {error}', [f'{name}:error={error}:when={number}']
            yield 'kill', f'{name} {number} killed', [f'{name}:signal=SIGKILL:when={number}']
            first = {}
            for later, count, _ in self.window[at:]:
                first.setdefault(later, count)
            # A name that comes only before is not called again; what the failure itself calls may be new.
            yield 'gone', f'{name} {number} gone', [f'{each}:error=EIO:when={count}+' for each, count in first.items()]

    def try_case(self, case):
        kind, label, injections = case
        place = Place(self.operation, self.work, self.start)
        log = os.path.join(place.folder, 'log')
        names = ','.join(dict.fromkeys(each.split(':')[0] for each in injections))
        tracing = ['strace', '-f', '-qq', '-o', log, '-e', 'trace=' + names]
        if kind != 'kill':  # quicker, but knows no signals
            tracing.append('--seccomp-bpf')
        for each in injections:
            tracing += ['-e', 'inject=' + each]
        code = place.run(self.driver, tracing, gone=kind == 'gone')
        with open(log, errors='replace') as text:
            injected = code == -signal.SIGKILL if kind == 'kill' else 'INJECTED' in text.read()
        faults = self.faults(kind, code, place) if injected or code is None else ['the fault was not injected']
        place.drop()
        return kind, label, code, faults

    def faults(self, kind, code, place):
        if code is None:
            return ['hangs']
        if kind == 'kill':
            code = 'killed'
        elif code not in (SUCCESS, REPEATED, FAILED):
            return [{LOST_FLAGS: 'a failure leaves nothing unsaved', FAILED_AGAIN: 'the second try fails'}.get(
                code, f'ends with {code}')]
        found = []
        if code == REPEATED:  # the card behind the failure, and then behind the second try
            found += self.not_whole(tree_below(place.first, self.old_card))
        found += self.not_whole(place.card())
        if code in (SUCCESS, REPEATED):
            if without_leftovers(place.card()) != self.new_card:
                found += ['told as done, and is not: ' + p for p in self.differing(place.card())]
            for part in ('export', 'staging'):
                if without_leftovers(place.beside()[part]) != self.new_beside[part]:
                    found += [f'told as done, and is not: {part}']
        found += self.not_whole_beside(place)
        if kind == 'kill' and place.run(self.driver, operation='open') != 0:
            found += ['the card does not open any more']
        return sorted(set(found))

    def differing(self, card):
        card = without_leftovers(card)
        return [p for p in sorted(card.keys() | self.new_card.keys()) if card.get(p) != self.new_card.get(p)]

    def not_whole(self, card):
        card = without_leftovers(card)
        paths = card.keys() | self.old_card.keys() | self.new_card.keys()
        return ['neither old nor new: ' + path for path in sorted(paths)
                if card.get(path) not in (self.old_card.get(path), self.new_card.get(path))]

    def not_whole_beside(self, place):
        found, beside = [], place.beside()
        for path, content in without_leftovers(beside['export']).items():
            if content not in (self.old_beside['export'].get(path), self.new_beside['export'].get(path)):
                found.append('neither old nor new: export/' + path)
        for path in self.old_beside['export'].keys() - beside['export'].keys():
            found.append('gone: export/' + path)
        if self.operation == 'backup':
            copies = [tree(os.path.join(place.work, name)) for name in os.listdir(place.work)]
            if not any(copy == self.old_beside['backup'] or self.is_backup(copy) for copy in copies):
                found.append('no whole backup is left')
        return found

    def is_backup(self, copy):
        """Whole, of the card before or behind a failure, when each file was old or new."""
        made = self.new_beside['backup']
        root = root_of(self.old_card)
        return copy.keys() == made.keys() and all(
            content in (made[path], self.new_card[os.path.join(root, path)]) for path, content in copy.items())


def root_of(card):
    return os.path.commonpath([os.path.dirname(path) for path in card])


def tree_below(folder, old):
    """A copy of the card's root, with the names that it has below the volume."""
    root = root_of(old)
    return {os.path.join(root, path): content for path, content in tree(folder).items()}


def main():
    arguments = argparse.ArgumentParser(usage=__doc__)
    arguments.add_argument('driver')
    arguments.add_argument('card')
    arguments.add_argument('-j', type=int, default=2)
    arguments.add_argument('operations', nargs='*', default=OPERATIONS)
    options = arguments.parse_intermixed_args()
    total = collections.Counter()
    rows, told = [], collections.Counter()
    with tempfile.TemporaryDirectory(dir='/dev/shm' if os.path.isdir('/dev/shm') else None) as work, \
            concurrent.futures.ThreadPoolExecutor(options.j) as pool:
        for operation in options.operations:
            sweep = Sweep(options.driver, options.card, operation, work)
            counts = collections.Counter(calls=len(sweep.window))
            for kind, label, code, faults in pool.map(sweep.try_case, sweep.cases()):
                counts[kind] += 1
                if code == SUCCESS:
                    counts['passed over'] += 1
                if faults:
                    counts['faulty'] += 1
                for fault in faults:
                    told[f'{operation}: {fault}'] += 1
                    if told[f'{operation}: {fault}'] == 1:
                        print(f'{operation}: {label}: {fault}', flush=True)
            rows.append((operation, counts))
            total += counts
    columns = ['calls', 'error', 'gone', 'kill', 'passed over', 'faulty']
    print('\n' + f'{"":10}' + ''.join(f'{column:>12}' for column in columns))
    for operation, counts in rows + [('all', total)]:
        print(f'{operation:10}' + ''.join(f'{counts[column]:12}' for column in columns))
    for fault, count in told.most_common():
        print(f'{count:6} x {fault}')
    sys.exit(1 if total['faulty'] else 0)


main()
