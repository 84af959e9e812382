// Lets the reader sort, search and filter the table of archives, which is complete without it.
'use strict';
(() => {
    const table = document.querySelector('table');
    const body = table.tBodies[0];
    const form = document.querySelector('form');
    const search = document.querySelector('#search');
    const found = document.querySelector('.found');
    const collator = new Intl.Collator('en', { numeric: true });
    const number = new Intl.NumberFormat('en');

    const plain = (text) => text.normalize('NFKC').toLowerCase();

    const rows = [...body.rows].map((row) => ({ row, text: '' }));

    // Missing values come last in both directions.
    const compare = {
        number: (a, b, direction) => {
            if (a === '' || b === '') return (a === '') - (b === '');
            return direction * (a - b);
        },
        text: (a, b, direction) => direction * collator.compare(a, b),
    };

    function sort(header) {
        const direction = header.ariaSort === 'ascending' ? -1 : 1;
        for (const other of header.parentElement.cells) other.removeAttribute('aria-sort');
        header.ariaSort = direction === 1 ? 'ascending' : 'descending';
        const kind = header.dataset.sort;
        for (const entry of rows) {
            const cell = entry.row.cells[header.cellIndex];
            entry.key = kind === 'number' ? cell.dataset.value : cell.textContent;
        }
        rows.sort((a, b) => compare[kind](a.key, b.key, direction));
        // With thousands of rows, this is quicker than by way of a fragment.
        for (const { row } of rows) body.append(row);
    }

    function filter() {
        const words = plain(search.value).split(/\s+/).filter(Boolean);
        const outcome = form.elements.outcome.value;
        let count = 0;
        for (const entry of rows) {
            if (words.length) entry.text ||= plain(entry.row.textContent);
            const isShown =
                (!outcome || entry.row.classList.contains(outcome)) &&
                words.every((word) => entry.text.includes(word));
            entry.row.hidden = !isShown;
            count += isShown;
        }
        body.hidden = count === 0;
        const all = number.format(rows.length);
        found.textContent = `${number.format(count)} of ${all} archive${rows.length === 1 ? '' : 's'}`;
    }

    for (const header of table.tHead.rows[0].cells) {
        if (!header.dataset.sort) continue;
        const button = document.createElement('button');
        button.type = 'button';
        button.textContent = header.textContent;
        button.addEventListener('click', () => sort(header));
        header.replaceChildren(button);
    }
    search.addEventListener('input', filter);
    form.addEventListener('change', filter);
    form.addEventListener('submit', (event) => event.preventDefault());
    form.reset(); // what the browser kept from an earlier visit
    form.hidden = false;
    filter();
})();
