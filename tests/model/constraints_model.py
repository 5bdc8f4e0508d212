# SPDX-License-Identifier: Apache-2.0
"""A second store of constraint rules and a second solver, lists all through."""


from inspect_model import Boolean, Popup, Reader, latin

LIMIT = 128


class NoSuchText(Exception):
    """A keyword or option was named that the PPD doesn't hold."""


# --- the store ---------------------------------------------------------------

class CStringSoup:
    """Texts of keywords and options alike. A text's id is its position."""

    def __init__(self):
        self.texts = []

    def insert(self, text):
        found = self.find(text)
        if found >= 0:
            return found
        self.texts.append(text)
        return len(self.texts) - 1

    def find(self, text):
        for position, known in enumerate(self.texts):
            if known == text:
                return position
        return -1


class KVCache:
    """Pairs of a key's and an option's id, in the order of insertion."""

    def __init__(self, pairs=()):
        self.pairs = list(pairs)

    def copy(self):
        return KVCache(self.pairs)

    def add(self, pair):
        self.pairs.append(pair)

    def insert(self, key, option):
        if key < 0:
            return
        for position, pair in enumerate(self.pairs):
            if pair[0] == key:
                self.pairs[position] = (key, option)
                return
        self.add((key, option))

    def get_item(self, key):
        for known, option in self.pairs:
            if known == key:
                return option
        return -1

    def holds(self, pair):
        return pair in self.pairs

    def pop_front(self):
        return self.pairs.pop(0)

    def equals(self, other):
        if len(self.pairs) != len(other.pairs):
            return False
        return (self.pairs == other.pairs or
                sorted(self.pairs, reverse=True) ==
                sorted(other.pairs, reverse=True))


class ConstraintForest:
    """key -> option -> the pairs that it conflicts with."""

    def __init__(self):
        self.trees = {}

    def insert(self, key, option, key2, option2):
        tree = self.trees.setdefault(key, {})
        tree.setdefault(option, []).append((key2, option2))

    def constraint_list(self, key, option):
        tree = self.trees.get(key, {})
        if option == -1:
            return [pair for each in sorted(tree) for pair in tree[each]]
        return list(tree.get(option, []))


class UIConstraints:
    def __init__(self):
        self.forest = ConstraintForest()
        self.requires = ConstraintForest()
        self.strings = CStringSoup()
        self.current = KVCache()
        self.keys = {}
        self.deferred = []

    def kvs_insert(self, key, option):
        key, option = self.strings.insert(key), self.strings.insert(option)
        self.keys.setdefault(key, []).append(option)

    def update_kv_cache(self, key, option):
        key, option = self.strings.insert(key), self.strings.insert(option)
        self.current.insert(key, option)

    def add(self, key1, option1, key2, option2, requires):
        rule = tuple(self.strings.insert(text)
                     for text in (key1, option1, key2, option2))
        forest = self.requires if requires else self.forest
        if self.strings.find(b"") in (rule[1], rule[3]):
            self.deferred.append((rule, forest))
        else:
            forest.insert(*rule)

    def resolve(self):
        blank = self.strings.find(b"")
        if blank < 0:
            return
        skipped = (self.strings.insert(b"None"), self.strings.insert(b"False"))
        for (key1, option1, key2, option2), forest in self.deferred:
            for first in self.expanded(key1, option1, blank, skipped):
                for second in self.expanded(key2, option2, blank, skipped):
                    forest.insert(key1, first, key2, second)
        self.deferred = []

    def expanded(self, key, option, blank, skipped):
        """The options that a rule names: the one given, or all but two."""
        if option != blank:
            return [option]
        return [o for o in self.keys.get(key, []) if o not in skipped]

    def engine(self, locked=None):
        return ConstraintsEngine(self.current, self.forest, self.keys, locked)

    def is_constrained(self, key, option):
        delta = KVCache()
        delta.insert(self.strings.find(key), self.strings.find(option))
        return bool(self.engine().test(delta).conflicts.pairs)


# --- the solver --------------------------------------------------------------

class ErrorSet:
    def __init__(self):
        self.conflicts = KVCache()
        self.alternatives = KVCache()


class ConstraintsEngine:
    def __init__(self, current, forest, keys, locked=None):
        self.current = current
        self.forest = forest
        self.keys = keys
        self.locked = locked
        # Which of the two bounds a search ran into: "depth", "queue".
        self.bounds = set()
        self.purge()

    def purge(self):
        self.queue, self.tried = [], []
        self.overflow, self.depth = False, 0

    def test(self, delta):
        errors = ErrorSet()
        merged = self.current.copy()
        for key, option in delta.pairs:
            merged.insert(key, option)
        for key, option in delta.pairs:
            pending = self.forest.constraint_list(key, option)
            blocked = list(pending)
            while pending:
                pair = pending.pop()
                if not merged.holds(pair):
                    continue
                errors.conflicts.add(pair)
                for other in reversed(self.keys.get(pair[0], [])):
                    if other != pair[1] and (pair[0], other) not in blocked:
                        errors.alternatives.add((pair[0], other))
        return errors

    def solve(self, delta, keep_delta):
        self.purge()
        errors = self.rsolve(delta, keep_delta)
        self.purge()
        return errors

    def rsolve(self, delta, keep_delta):
        self.depth += 1
        errors = self.test(delta)
        if not errors.conflicts.pairs:
            return errors
        if self.depth > LIMIT:
            self.bounds.add("depth")
            return errors
        taken = self.test_locked_status(errors.alternatives)
        if self.depth == 1 and taken.pairs:
            errors.conflicts = taken
            errors.alternatives = KVCache()
            return errors
        while errors.alternatives.pairs:
            key, option = errors.alternatives.pop_front()
            if keep_delta and delta.get_item(key) >= 0:
                continue
            delta.insert(key, option)
            trial = self.test(delta)
            if not trial.conflicts.pairs:
                return trial
            if self.overflow:
                continue
            if any(delta.equals(known) for known in self.tried):
                continue
            self.queue.append(delta.copy())
            self.overflow = len(self.queue) > LIMIT
            if self.overflow:
                self.bounds.add("queue")
        if not self.queue:
            return errors
        proposal = self.queue.pop(0)
        self.tried.append(proposal)
        delta.pairs = list(proposal.pairs)
        return self.rsolve(delta, keep_delta)

    def test_locked_status(self, alternatives):
        """Takes what is locked out of the alternatives."""
        taken = KVCache()
        if self.locked is None or not self.locked.pairs:
            return taken
        left = []
        for key, option in alternatives.pairs:
            if any(k == key and o in (-1, option)
                   for k, o in self.locked.pairs):
                taken.insert(key, self.current.get_item(key))
            else:
                left.append((key, option))
        alternatives.pairs = left
        return taken


# --- the PPD that holds both -------------------------------------------------

class RuleReader(Reader):
    """A reader that keeps the rules, and tells the store of selections."""

    def __init__(self, data, parse_options=3):
        self.store = UIConstraints()
        super().__init__(data, parse_options)
        self.store.resolve()

    def add_rule(self, key1, option1, key2, option2, requires):
        self.store.add(key1, option1, key2, option2, requires)

    def place(self, group, control, warn):
        super().place(group, control, warn)
        store, keyword = self.store, control.keyword
        if isinstance(control, Popup):
            if control.items and control.default is not None:
                store.update_kv_cache(keyword, control.default)
            for item in control.items:
                store.kvs_insert(keyword, item.keyword)
        elif isinstance(control, Boolean):
            store.update_kv_cache(keyword, control.value_text().encode())
            store.kvs_insert(keyword, b"True")
            store.kvs_insert(keyword, b"False")
        control.update_kv_cache = store.update_kv_cache

    def is_constrained(self, key, option, custom_paper):
        """While the print size follows the page size, the real size counts."""
        print_size = self.find(self.controls, b"*ZUPrintSize")
        page_size = self.find(self.controls, b"*PageSize")
        real = page_size.value_text() if page_size else None
        if custom_paper:
            real = "CustomPrintSize"
        if real is None or not isinstance(print_size, Popup) or \
                not print_size.is_selected(b"SameAsPageSize"):
            return self.store.is_constrained(key, option)
        print_size.set_text(real)
        answer = self.store.is_constrained(key, option)
        print_size.set_text("SameAsPageSize")
        return answer

    def constrained(self, custom_paper=False):
        found = []
        for control in self.controls:
            options = []
            if isinstance(control, Popup):
                options = [i.keyword for i in control.items]
            elif isinstance(control, Boolean):
                options = [b"True", b"False"]
            found += [[latin(control.keyword), latin(option)]
                      for option in options
                      if self.is_constrained(control.keyword, option,
                                             custom_paper)]
        return {"constrained": found}

    def ids(self, pair):
        """A pair of texts as ids; an option of None stays open."""
        found = []
        for text in pair:
            known = -1 if text is None else self.store.strings.find(text)
            if known < 0 and text is not None:
                raise NoSuchText(latin(text))
            found.append(known)
        return tuple(found)

    def texts(self, cache):
        known = self.store.strings.texts
        return [[latin(known[key]), latin(known[o]) if o >= 0 else o]
                for key, o in cache.pairs]

    def solved(self, pairs, locks=(), keep_delta=False, only_test=False):
        """(document, the bounds that the search ran into)."""
        delta = KVCache()
        for pair in pairs:
            delta.insert(*self.ids(pair))
        engine = self.store.engine(KVCache(self.ids(lock) for lock in locks))
        errors = engine.test(delta) if only_test else \
            engine.solve(delta, keep_delta)
        return {"solved": not errors.conflicts.pairs,
                "delta": self.texts(delta),
                "conflicts": self.texts(errors.conflicts),
                "alternatives": self.texts(errors.alternatives)}, engine.bounds
