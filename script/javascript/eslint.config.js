// The rules for scripts. Those that the engine runs in the pages of archives are classic scripts: each is one function
// expression that the engine is handed, but for shared.js, whose functions all others use. Those of pages of our own
// know what their document is.

import js from '@eslint/js';
import globals from 'globals';
import { readFileSync, existsSync } from 'node:fs';

const scripts = 'Platform/Engine/Scripts';
const shared = `${scripts}/shared.js`;

const text = existsSync(shared) ? readFileSync(shared, 'utf8') : '';
const sharedFunctions = Object.fromEntries(
    [...text.matchAll(/^(?:async )?function\*? (\w+)/gm)].map(([, name]) => [name, 'readonly']),
);

// What a page may have put in the place of the document's own properties.
const message =
    'A page may shadow the properties of its document: read them through a function of shared.js.';
const restricted = [
    { selector: "MemberExpression[object.type='Identifier'][object.name='document']", message },
    { selector: "VariableDeclarator[id.type='ObjectPattern'][init.name='document']", message },
];

const rules = {
    ...js.configs.recommended.rules,
    eqeqeq: 'error',
    'no-restricted-syntax': ['error', ...restricted],
    'no-unused-vars': 'error',
    'no-var': 'error',
    'prefer-const': 'error',
};

export default [
    { linterOptions: { reportUnusedDisableDirectives: 'error' } },
    {
        files: [`${scripts}/**/*.js`],
        ignores: [shared],
        languageOptions: { sourceType: 'script', globals: { ...globals.browser, ...sharedFunctions } },
        rules,
    },
    {
        files: [shared],
        languageOptions: { sourceType: 'script', globals: globals.browser },
        rules: { ...rules, 'no-unused-vars': ['error', { vars: 'local' }] },
    },
    {
        // A page of our own, which shadows nothing.
        files: ['Source/Tools/**/*.js'],
        languageOptions: { sourceType: 'script', globals: globals.browser },
        rules: { ...rules, 'no-restricted-syntax': 'off' },
    },
    {
        files: ['script/javascript/*.js'],
        languageOptions: { globals: globals.node },
        rules,
    },
];
