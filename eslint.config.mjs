// How JS is written here. `npx eslint .` checks it, `npx eslint --fix .` formats it.

import js from '@eslint/js';
import stylistic from '@stylistic/eslint-plugin';
import globals from 'globals';

const STYLE = {
    ...stylistic.configs.customize({ indent: 4, semi: true, arrowParens: true, braceStyle: '1tbs' }).rules,
    '@stylistic/array-bracket-newline': ['error', 'consistent'],
    '@stylistic/comma-dangle': ['error', {
        arrays: 'always-multiline',
        objects: 'always-multiline',
        imports: 'always-multiline',
        exports: 'always-multiline',
    }],
    '@stylistic/function-call-spacing': 'error',
    '@stylistic/linebreak-style': 'error',
    '@stylistic/max-len': ['error', { code: 120, ignoreUrls: true }],
    '@stylistic/max-statements-per-line': ['error', { max: 2 }],
    '@stylistic/multiline-ternary': 'off',
    '@stylistic/no-extra-semi': 'error',
    '@stylistic/no-multi-spaces': ['error', { ignoreEOLComments: true }],
    '@stylistic/operator-linebreak': ['error', 'after', { overrides: { '?': 'before', ':': 'before' } }],
    '@stylistic/quote-props': ['error', 'as-needed'],
    '@stylistic/quotes': ['error', 'single', { avoidEscape: true }],
    '@stylistic/semi-style': 'error',
    '@stylistic/switch-colon-spacing': 'error',
};

const CODE = {
    ...js.configs.recommended.rules,
    'arrow-body-style': 'error',
    curly: 'error',
    'dot-notation': 'error',
    eqeqeq: 'error',
    'max-lines': ['error', 450],
    'max-lines-per-function': 'error',
    'no-else-return': 'error',
    'no-lonely-if': 'error',
    'no-throw-literal': 'error',
    'no-unneeded-ternary': 'error',
    'no-unused-vars': ['error', { ignoreRestSiblings: true }],
    'no-useless-return': 'error',
    'no-var': 'error',
    'object-shorthand': 'error',
    'one-var': ['error', 'never'],
    'prefer-const': 'error',
    strict: 'error',
};

export default [
    { ignores: ['out/'] },
    { plugins: { '@stylistic': stylistic }, rules: { ...CODE, ...STYLE } },
    {
        files: ['**/*.js', 'scripts/mutate', 'scripts/screenshot'],
        languageOptions: { sourceType: 'commonjs', globals: globals.node },
    },
    { files: ['**/*.mjs'], languageOptions: { globals: globals.nodeBuiltin } },
    { files: ['emulator/page/*.js'], languageOptions: { sourceType: 'module', globals: globals.browser } },
];
